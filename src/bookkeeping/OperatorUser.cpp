#include "kpTables/bookkeeping/OperatorUser.h"

#include <algorithm>
#include <string_view>

#include "bookkeeping/BillKinds.h"
#include "bookkeeping/CheckedTables.h"
#include "bookkeeping/OwnTables.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/bookkeeping/ActingOperator.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

constexpr const char* kAuditor[] = {"审核员", "审核日期"};
constexpr const char* kClosing[] = {"结帐日期", "结帐标志"};
constexpr const char* kOperators = "操作员";

/// Master data that a right is for.
struct MasterRight {
    const char* right;
    const char* table;
};
constexpr MasterRight kMasters[] = {
    {rights::kProducts, "商品设置"},  {rights::kProducts, "商品分类"},  {rights::kWarehouses, "仓库设置"},
    {rights::kProjects, "项目设置"},  {rights::kProjects, "项目分类"},  {rights::kSuppliers, "厂商资料"},
    {rights::kSuppliers, "厂商分类"}, {rights::kCustomers, "客户资料"}, {rights::kCustomers, "客户分类"},
};

struct BillRight {
    const char* right;
    BillKind kind;
};
constexpr BillRight kBills[] = {{rights::kInbound, kInbound}, {rights::kOutbound, kOutbound}, {rights::kCost, kCost}};

bool IsAuditor(std::string_view column) {
    return std::ranges::any_of(kAuditor, [&](const char* each) { return column == each; });
}

/// Collects the rights table by table.
class UserRights {
public:
    explicit UserRights(std::vector<TableInfo> tables) : tables_(std::move(tables)) {}

    void All(const std::string& table) {
        TableRights& rights = Of(table);
        rights.insert = rights.remove = true;
        for (const auto& column : ColumnsOf(table)) Change(rights, column.name);
    }
    void AllTables() {
        for (const TableInfo& table : tables_) All(table.name);
    }
    void Insert(const std::string& table) { Of(table).insert = true; }
    void Remove(const std::string& table) { Of(table).remove = true; }
    void Change(const std::string& table, std::string_view column) {
        const TableInfo* found = FindTable(tables_, table);
        if (found && FindColumn(*found, column)) Change(Of(table), std::string(column));
    }
    /// A bill's header but for the audit, and its lines.
    void Enter(const BillKind& kind) {
        Insert(kind.Headers());
        for (const auto& column : ColumnsOf(kind.Headers())) {
            if (!IsAuditor(column.name)) Change(Of(kind.Headers()), column.name);
        }
        All(kind.Lines());
    }
    void OwnRows(const std::string& table, const std::string& column, const std::string& value) {
        Of(table).ownColumn = column;
        Of(table).ownValue = value;
    }

    /// Of the tables that the book has.
    std::vector<TableRights> Take() {
        std::erase_if(rights_, [&](const TableRights& each) { return !FindTable(tables_, each.table); });
        return std::move(rights_);
    }

private:
    TableRights& Of(const std::string& table) {
        const auto found = std::ranges::find(rights_, table, &TableRights::table);
        return found == rights_.end() ? rights_.emplace_back(TableRights{table}) : *found;
    }
    std::vector<TableInfo::Column> ColumnsOf(const std::string& table) const {
        const TableInfo* found = FindTable(tables_, table);
        return found ? found->columns : std::vector<TableInfo::Column>();
    }
    static void Change(TableRights& rights, const std::string& column) {
        if (std::ranges::find(rights.columns, column) == rights.columns.end()) rights.columns.push_back(column);
    }

    std::vector<TableInfo> tables_;
    std::vector<TableRights> rights_;
};

}  // namespace

BookUser UserOf(const BookPtr& book, std::int32_t operatorId) {
    const auto name = book->Execute("Select 姓名 From 操作员 Where ID=" + std::to_string(operatorId));
    if (name->Eof()) RefuseWith(Message("the book has no operator {1}", operatorId));
    BookUser user{Text(name->GetValue(0)), {}, {}};
    CheckedTables tables(book);
    const auto has = [&](const char* right) {
        return tables.Ask([&](CTables& component) { return component.Get操作权限(operatorId, right); });
    };
    UserRights rights(book->Tables());
    rights.Insert("Log");
    rights.Change(kOperators, "密码");
    rights.OwnRows(kOperators, "姓名", user.name);
    for (const auto& [right, kind] : kBills) {
        if (has(right)) rights.Enter(kind);
    }
    for (const BillKind& kind : kBillKinds) {
        if (has(rights::kAudit)) {
            for (const char* column : kAuditor) rights.Change(kind.Headers(), column);
        }
        if (!has(rights::kDeleteBills)) continue;
        rights.Remove(kind.Headers());
        rights.Remove(kind.Lines());
    }
    for (const auto& [right, table] : kMasters) {
        if (has(right)) rights.All(table);
    }
    if (has(rights::kClose)) {
        rights.All("仓库余额表");
        for (const char* column : kClosing) rights.Change("仓库设置", column);
    }
    if (has(rights::kSettings)) {
        rights.AllTables();
        rights.OwnRows(kOperators, "姓名", "");
    }
    user.rights = rights.Take();
    return user;
}

}  // namespace kpTables::bookkeeping
