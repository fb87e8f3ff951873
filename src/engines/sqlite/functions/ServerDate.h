// Dates as SQL Server reads and counts them.
#pragma once

#include <optional>
#include <string_view>

#include "kpTables/Date.h"

namespace kpTables::sqlite {

/// Day 0 of SQL Server, 1900-01-01, as an OLE date.
inline constexpr double kServerDayZero = 2;

/// Reads yyyymmdd, and what Date::Parse reads with blanks beside the separators: a number that is cast to char(2)
/// brings its padding along. Nothing when it is neither.
std::optional<Date> ReadServerDate(std::string_view text);

}  // namespace kpTables::sqlite
