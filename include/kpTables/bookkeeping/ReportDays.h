// The daily list of a month, in the order of the days.
#pragma once

#include <cstdint>
#include <vector>

#include "kpTables/CTables.h"
#include "kpTables/Currency.h"
#include "kpTables/bookkeeping/ReportValuation.h"

namespace kpTables::bookkeeping {

struct DayFigures {
    std::int32_t day = 0;  ///< of the month
    double openingQuantity = 0;
    Currency openingAmount;
    double inQuantity = 0;
    Currency inAmount;
    double outQuantity = 0;
    Currency outAmount;
    double quantity = 0;  ///< stock at the day's end
    Currency amount;
};

/// The days of a month (1 to 12) that have movements, in one warehouse (dpID) or, with 0, in all. Quantities and
/// amounts come from rs日报列表, whose days are in another order; the running stock is worked out here. At cost, a
/// day's outbound amount is that of the cost bills with its date, and of the goods that have no cost bill in the month.
std::vector<DayFigures> DailyFigures(CTables& tables, std::int16_t month, std::int32_t warehouse, Valuation valuation);

}  // namespace kpTables::bookkeeping
