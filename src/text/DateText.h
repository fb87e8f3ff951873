// Text forms of dates, which are serial numbers: see Calendar.h.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kpTables::text {

/// The order of three numbers with at most two digits each.
enum class DateOrder { YearFirst, MonthFirst };

/// Reads y-m-d, y/m/d, y.m.d, yyyy年M月d日; m/d/y with four digits in the year, or d/m/y where no month has that
/// number; Mar 7, 2004, 7 March 2004 and 10-Mar-04; yyyy-M, M/yyyy, yyyy年M月 and Mar 2004 for a month's first day.
/// With or without H:mm[:ss] and AM, PM, 上午 or 下午, or a time alone, blanks around allowed. Two-digit years are a
/// FullYear. Nothing when it is no date.
std::optional<double> ParseDate(std::string_view text, DateOrder order = DateOrder::YearFirst) noexcept;
/// Reads YYYY-MM-DD[{T| }HH:MM[:SS]] only, as stored and as JSON carries it.
std::optional<double> ParseIsoDate(std::string_view text) noexcept;

/// The default text form: "2004-3-7", with " 12:30:00" (hour without a leading zero) when there is a time; a time alone
/// (day 0) is just "12:30:00", and the zero date is "0:00:00".
std::string DateText(double serial);
/// "2004-03-07", with separator and "12:30:00" after it when there is a time. Sorts as text in order of time.
std::string IsoDateText(double serial, char separator = ' ');

/// The size of the longest ISO text.
inline constexpr std::size_t kLongestIsoDate = 24;
/// As IsoDateText, into a buffer of that size; answers the end of what was written.
char* WriteIsoDate(char* buffer, double serial, char separator = ' ') noexcept;

}  // namespace kpTables::text
