// The year that a book is of.
#pragma once

#include <cstdint>

#include "kpTables/Connection.h"

namespace kpTables::bookkeeping {

/// The year of the last balance rows, else of the last bills, else of 当前日期 or 建帐日期; 0 in a book without any of
/// them. The dates are read as they are stored: the component's methods would set those that are missing.
std::int32_t BookYear(Connection& book);

}  // namespace kpTables::bookkeeping
