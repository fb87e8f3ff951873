#include "kpTables/bookkeeping/ClosedMonths.h"

#include <algorithm>
#include <optional>

#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"

namespace kpTables::bookkeeping {

namespace {

/// The date that the closed flag goes with; nothing when the flag is not set.
std::optional<Date> FlaggedDate(Connection& book, std::int32_t warehouse) {
    const auto rows =
        book.Execute("Select 结帐日期 From 仓库设置 Where 结帐标志<>0 And dpID=" + std::to_string(warehouse));
    if (rows->Eof() || !IsDate(rows->GetValue(0))) return std::nullopt;
    return CDate(rows->GetValue(0));
}

/// The month that the closed flag stands for: its date is the last day of a month of which there are balance rows.
std::int16_t FlaggedMonth(Connection& book, std::int32_t warehouse) {
    const auto date = FlaggedDate(book, warehouse);
    if (!date || Date::FromSerial(date->Serial() + 1).Day() != 1) return 0;
    const bool hasRows = HasRows(book, "Select TOP 1 pdID From 仓库余额表" + OfMonth(warehouse, date->Month()) +
                                           " And 年份=" + std::to_string(date->Year()));
    return static_cast<std::int16_t>(hasRows ? date->Month() : 0);
}

/// Whether every product of the month has a row in the next one.
bool IsCarried(Connection& book, std::int32_t warehouse, std::int32_t month) {
    const auto next = std::to_string(month + 1);
    return !HasRows(book, "Select TOP 1 A.pdID From 仓库余额表 As A Where A.dpID=" + std::to_string(warehouse) +
                              " And A.月份=" + std::to_string(month) +
                              " And Not Exists (Select * From 仓库余额表 As B Where B.pdID=A.pdID And B.dpID=" +
                              std::to_string(warehouse) + " And B.月份=" + next + ")");
}

/// The last month after one whose products are all carried into the next one; 0 when there is none.
std::int16_t CarriedMonth(Connection& book, std::int32_t warehouse, std::int16_t after) {
    const auto months = book.Execute("Select Distinct 月份 From 仓库余额表 Where dpID=" + std::to_string(warehouse) +
                                     " And 月份>" + std::to_string(after) + " Order by 月份 DESC");
    for (std::int16_t later = 0; !months->Eof(); months->MoveNext()) {
        const std::int16_t month = CInt(months->GetValue(0));
        if (later == month + 1 && IsCarried(book, warehouse, month)) return month;
        later = month;
    }
    return 0;
}

}  // namespace

std::int16_t ClosedThrough(Connection& book, std::int32_t warehouse) {
    const std::int16_t flagged = FlaggedMonth(book, warehouse);
    return std::max(flagged, CarriedMonth(book, warehouse, flagged));
}

ClosedMonths::ClosedMonths(Connection& book) {
    const auto warehouses = book.Execute("Select Distinct dpID From 仓库余额表 Where dpID Is Not Null");
    for (; !warehouses->Eof(); warehouses->MoveNext()) {
        const std::int32_t warehouse = CLng(warehouses->GetValue(0));
        if (const auto month = ClosedThrough(book, warehouse); month > 0) through_[warehouse] = month;
    }
}

std::int16_t ClosedMonths::Through(std::int32_t warehouse) const {
    const auto found = through_.find(warehouse);
    return found == through_.end() ? std::int16_t{0} : found->second;
}

}  // namespace kpTables::bookkeeping
