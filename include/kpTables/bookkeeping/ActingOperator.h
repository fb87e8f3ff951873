// The operator that a host acts as: what it may do, its warehouse, and its lines in the log.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "kpTables/Connection.h"
#include "kpTables/Date.h"

namespace kpTables::bookkeeping {

/// Rights of operators, by their columns; an operator may have others that a host has added.
namespace rights {
inline constexpr const char* kInbound = "入库处理";
inline constexpr const char* kOutbound = "出库处理";
inline constexpr const char* kCost = "成本处理";
inline constexpr const char* kAudit = "单据审核";
inline constexpr const char* kDeleteBills = "单据删除";
inline constexpr const char* kClose = "月末结帐";
inline constexpr const char* kStock = "库存查询";
inline constexpr const char* kReports = "报表打印";
inline constexpr const char* kProducts = "商品管理";
inline constexpr const char* kWarehouses = "仓库管理";
inline constexpr const char* kProjects = "项目管理";
inline constexpr const char* kSuppliers = "发货单位";  ///< the column 资产处理
inline constexpr const char* kCustomers = "收货单位";  ///< the column 卡片打印
inline constexpr const char* kSettings = "系统设置";
}  // namespace rights

/// An operator who has logged in. A book's file is protected by the system's rights only: this keeps honest people to
/// what their firm has agreed, and says who did what.
class ActingOperator {
public:
    /// Logs in: asks for the password when the operator has one or there is no such operator, and refuses, in the same
    /// words, an unknown name and a wrong password (error 5). A password that cannot be read refuses, too: a failure
    /// never counts as an empty password. Error 5 also when several operators have the name.
    ActingOperator(ConnectionPtr book, const std::string& name, const std::function<std::string()>& password);

    std::int32_t Id() const noexcept { return id_; }
    /// As the book has it: what bills carry as 录入员 and 审核员.
    const std::string& Name() const noexcept { return name_; }
    /// The managed warehouse's dpID; 0 when there is none.
    std::int32_t Warehouse() const noexcept { return warehouse_; }

    bool Has(const std::string& right) const;
    /// Error 5 that names the operator and the right when it is missing.
    void Require(const std::string& right) const;
    /// Adds a line to the log; what is cut to the 255 characters of its column. Call it in the transaction of the
    /// change.
    void Log(Date when, const std::string& what) const;

private:
    ConnectionPtr book_;
    std::int32_t id_ = 0;
    std::string name_;
    std::int32_t warehouse_ = 0;
};

/// Whether the book's setting demands an operator for every change; false in a new book. A setting that cannot be read
/// is an error.
bool OperatorRequired(const ConnectionPtr& book);
/// Sets it. Error 5 when it is switched on and no operator has the right 系统设置, who could switch it off again.
void RequireOperator(const ConnectionPtr& book, bool required);

}  // namespace kpTables::bookkeeping
