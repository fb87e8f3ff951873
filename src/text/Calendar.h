// Calendar days and times of day, and the serial numbers that count them: days since 1899-12-30, the time of day as the
// fraction. Before day 0 the fraction still counts away from midnight (-1.25 is 1899-12-29 06:00). Years 100 to 9999.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kpTables::text {

inline constexpr int kDaysPerWeek = 7;
inline constexpr int kMonthsPerYear = 12;
inline constexpr int kMonthsPerQuarter = 3;
inline constexpr int kSecondsPerMinute = 60;
inline constexpr int kSecondsPerHour = 3600;
inline constexpr int kSecondsPerDay = 86400;

inline constexpr std::array<std::string_view, kMonthsPerYear> kMonthNames = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

struct DateParts {
    int year, month, day, hour, minute, second;
};

/// False outside the years 100 to 9999.
bool IsSerial(double serial) noexcept;
/// Nothing when there is no such day or time.
std::optional<double> SerialOf(const DateParts& parts) noexcept;
/// As DateSerial: month and day may overflow (month 13 is January of the next year), a two-digit year is a FullYear.
/// Nothing out of range.
std::optional<double> SerialOfDay(int year, int month, int day) noexcept;
/// A year from 0 to 29 as 20xx, one from 30 to 99 as 19xx, any other as it is.
int FullYear(int year) noexcept;

/// Broken down to the nearest second.
DateParts PartsOf(double serial) noexcept;
/// Seconds since midnight, to the nearest one.
int SecondOfDay(double serial) noexcept;
/// The day's number, without the time.
std::int64_t DayNumber(double serial) noexcept;
/// 1 to 7 from the weekday that counts as the first (1 Sunday to 7 Saturday).
int WeekdayOf(std::int64_t dayNumber, int first = 1) noexcept;

}  // namespace kpTables::text
