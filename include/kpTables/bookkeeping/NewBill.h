// A bill as it is entered.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Date.h"
#include "kpTables/bookkeeping/LineAmounts.h"
#include "kpTables/bookkeeping/StoredBill.h"

namespace kpTables::bookkeeping {

/// A transfer becomes an outbound and an inbound bill.
enum class EntryKind { Inbound, Outbound, Cost, Transfer };

/// Where such a bill is found; of a transfer, its outbound half.
constexpr BillFamily FamilyOf(EntryKind kind) noexcept {
    if (kind == EntryKind::Inbound) return BillFamily::Inbound;
    return kind == EntryKind::Cost ? BillFamily::Cost : BillFamily::Outbound;
}

struct NewBillLine {
    std::int64_t row = 0;  ///< where it comes from (a file's line), for messages; 0: nowhere
    std::int32_t product = 0;
    double quantity = 0;
    /// Nothing given: an inbound bill takes the product's 购进单价, an outbound one its 默认单价 (both with tax), a
    /// transfer and a cost bill the warehouse's current cost. Cost bills have netPrice and net only.
    GivenAmounts amounts = {};
    std::optional<double> taxRate = {};  ///< percent; nothing: the product's; transfers and cost bills have none
    std::string handler = {};            ///< 经手人
    std::string counterpart = {};        ///< 交接人
    std::string packing = {};            ///< 包装
    std::string slot = {};               ///< 货位
    double term = 0;                     ///< 期限
};

struct NewBill {
    EntryKind kind = EntryKind::Inbound;
    std::string key = {};  ///< what the source calls it, for messages and the answer
    Date date = {};
    std::int32_t warehouse = 0;    ///< dpID; of a transfer, where the goods come from
    std::int32_t toWarehouse = 0;  ///< of a transfer, where they go
    std::int32_t partner = 0;      ///< KSID of a supplier or customer; 0: none
    std::int32_t project = 0;      ///< 项目ID; 0: none
    std::string type = {};         ///< 单据类型; "": 入库单 or 出库单. A transfer is a 调拨单
    std::string subtype = {};      ///< 类型, the firm's own
    std::string number = {};       ///< "": by the firm's pattern
    std::string remarks = {};      ///< 说明
    std::string clerk = {};        ///< 录入员
    std::vector<NewBillLine> lines = {};
};

}  // namespace kpTables::bookkeeping
