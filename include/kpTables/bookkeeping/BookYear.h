// The year that a book is of, and its first month.
#pragma once

#include <cstdint>

#include "kpTables/Connection.h"

namespace kpTables::bookkeeping {

/// The year of the last balance rows, else of the last bills, else of 当前日期 or 建帐日期; 0 in a book without any of
/// them. The dates are read as they are stored: the component's methods would set those that are missing.
std::int32_t BookYear(Connection& book);

/// The month that a firm's book begins with, by the 建帐日期 of AccInfo; 1 in a book that has none, or one of another
/// year. Bills of an earlier month are not entered.
std::int32_t FirstMonth(Connection& book);

}  // namespace kpTables::bookkeeping
