// Dates as SQL Server reads and counts them.
#pragma once

#include <optional>
#include <string_view>

namespace kpTables::functions {

/// Day 0 of SQL Server, 1900-01-01, as a serial number.
inline constexpr double kServerDayZero = 2;

/// Reads yyyymmdd, ISO 8601 with T and fractions of a second (which are dropped), and what text::ParseDate reads with
/// blanks beside the separators: a number that is cast to char(2) keeps its padding. Nothing when it is neither.
std::optional<double> ReadServerDate(std::string_view text);

}  // namespace kpTables::functions
