// At which amounts outbound goods leave the stock in reports.
#pragma once

#include <cstdint>
#include <optional>

#include "kpTables/CTables.h"

namespace kpTables::bookkeeping {

enum class Valuation {
    OutboundBills,  ///< at the net amounts of the outbound bills
    CostBills,      ///< at the amounts of the cost bills; goods without one in their month, at the outbound bills'
};

/// The setting of a book (系统选项) that names its valuation: 成本 for cost bills, 出库 for outbound bills.
inline constexpr const char* kValuationSetting = "出库计价";

/// What the book's setting says; nothing where it is not set. Error 5 for a value that is none of the two.
std::optional<Valuation> ValuationSetting(CTables& tables);
/// With which bills a warehouse's (dpID) month was closed. Nothing where its figures do not tell: both bills add up to
/// the same, or neither to the balance.
std::optional<Valuation> ClosedWith(Connection& book, std::int32_t warehouse, std::int16_t month);
/// The valuation where nobody asks for one: the setting, else how the last closed month that tells was closed, else
/// OutboundBills.
Valuation ValuationOf(CTables& tables);

}  // namespace kpTables::bookkeeping
