#include "kpTables/bookkeeping/ReportMonths.h"

#include <algorithm>

#include "bookkeeping/BillKinds.h"
#include "bookkeeping/Query.h"
#include "bookkeeping/Warehouses.h"
#include "kpTables/bookkeeping/ClosedMonths.h"

namespace kpTables::bookkeeping {

namespace {

/// Months of balance rows and bills.
constexpr const char* kTablesOfMonths[] = {"仓库余额表", "入库目录", "出库目录", "成本目录"};

/// The warehouse's first month with balance rows or bills; 0 when it has none.
std::int32_t FirstUsedMonth(Connection& book, std::int32_t warehouse) {
    std::int32_t first = 0;
    for (const char* table : kTablesOfMonths) {
        const auto month = NumberOf(book, "Select Min(月份) As 首月 From " + std::string(table) +
                                              " Where 月份>0 And dpID=" + std::to_string(warehouse));
        if (month > 0 && (first == 0 || month < first)) first = month;
    }
    return first;
}

MonthState StateOf(Connection& book, std::int16_t month, std::int32_t warehouse) {
    const std::int32_t through = ClosedThrough(book, warehouse);
    if (month <= through) return MonthState::Closed;
    const std::int32_t open = through > 0 ? through + 1 : FirstUsedMonth(book, warehouse);
    if (open == 0 || month < open) return MonthState::Unused;
    return month == open ? MonthState::Open : MonthState::NotReached;
}

std::int32_t Greatest(Connection& book, const std::string& column, const std::string& table) {
    return NumberOf(book, "Select Max(" + column + ") As 最大 From " + table + " Where 月份>0 And 月份<13");
}

}  // namespace

std::vector<WarehouseMonth> MonthStates(Connection& book, std::int16_t month, std::optional<std::int32_t> warehouse) {
    std::vector<WarehouseMonth> states;
    if (!warehouse && !HasRows(book, "Select TOP 1 dpID From 仓库设置")) return states;
    for (const auto& each : ReadWarehouses(book, warehouse)) {
        states.push_back({each.id, each.name, StateOf(book, month, each.id)});
    }
    return states;
}

std::int16_t LastUsedMonth(Connection& book) {
    std::int32_t last = 0;
    for (const auto& kind : kBillKinds) last = std::max(last, Greatest(book, "月份", kind.Headers()));
    return static_cast<std::int16_t>(last > 0 ? last : Greatest(book, "月份", "仓库余额表"));
}

}  // namespace kpTables::bookkeeping
