// The balance of a month, at one valuation.
#pragma once

#include <cstdint>

#include "kpTables/CTables.h"
#include "kpTables/InOut.h"
#include "kpTables/bookkeeping/ReportValuation.h"

namespace kpTables::bookkeeping {

/// The rows of rs余额记录 for a month (0: the first, which is written back) in one warehouse (dpID) or, with 0, in all.
/// In warehouses that were closed at the other valuation, the month's outbound amounts and the closing amounts are
/// those of this one, and the prices follow; opening stock and 累计 are as the months were closed. Without balance rows
/// there are no rows.
RecordsetPtr BalanceAt(CTables& tables, std::int32_t warehouse, InOut<std::int16_t> month, Valuation valuation);

}  // namespace kpTables::bookkeeping
