// What is said above a report's table.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/bookkeeping/ReportValuation.h"
#include "kpbook/Workspace.h"

namespace kpTables::kpbook::commands {

/// What to know of a month that is not closed in a warehouse (dpID) or, without one, in some of them; nothing where it
/// is. whereFrom: where the figures of an open month come from.
std::vector<std::string> MonthNotes(Workspace& workspace, std::int16_t month, std::optional<std::int32_t> warehouse,
                                    const std::string& whereFrom);

/// "出库按成本单计价"
std::string ValuationText(bookkeeping::Valuation valuation);

}  // namespace kpTables::kpbook::commands
