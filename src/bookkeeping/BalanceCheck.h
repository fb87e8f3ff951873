// The figures of the closed months.
#pragma once

#include <vector>

#include "kpTables/bookkeeping/Check.h"

namespace kpTables::bookkeeping {

/// Doubled rows of a key, in all months.
void CheckDoubledRows(Connection& book, std::vector<Finding>& findings);
/// The figures of every warehouse's closed months; doubled rows are left out.
void CheckClosedMonths(Connection& book, std::vector<Finding>& findings);

}  // namespace kpTables::bookkeeping
