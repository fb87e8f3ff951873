// What went out, at the amounts that a closing takes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Currency.h"
#include "kpTables/bookkeeping/ReportValuation.h"

namespace kpTables::bookkeeping {

/// The goods of a product on a warehouse's bills of a month, or of a day.
struct OutboundGoods {
    std::int32_t warehouse = 0;                ///< dpID; 0: none
    std::int32_t month = 0;                    ///< 1 to 12; 0: none
    std::int32_t day = 0;                      ///< 0 where sums of months were asked for
    std::optional<std::int32_t> product = {};  ///< pdID; a line may have none
    double quantity = 0;
    Currency amount;
};

enum class SumsOf { Months, Days };

/// Sums of the outbound bills or, at cost, of the cost bills. As in a closing at cost, the goods that a warehouse and
/// month have no cost bill of leave at the amounts of the outbound bills. condition: of the bills' headers, " Where
/// 月份=3", or empty for all.
std::vector<OutboundGoods> OutboundAt(Connection& book, Valuation valuation, const std::string& condition, SumsOf sums);

}  // namespace kpTables::bookkeeping
