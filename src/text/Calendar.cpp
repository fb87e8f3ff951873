#include "text/Calendar.h"

#include <cmath>

namespace kpTables::text {

namespace {

constexpr int kFirstDay = -657434;  // 0100-01-01
constexpr int kLastDay = 2958465;   // 9999-12-31
constexpr int kMinYear = 100;
constexpr int kMaxYear = 9999;

// In the proleptic Gregorian calendar; the year runs from March, so that a leap day ends it.
int NumberOfDay(int year, int month, int day) noexcept {
    const int y = month > 2 ? year : year - 1;
    const int era = (y >= 0 ? y : y - 399) / 400;
    const int yearOfEra = y - era * 400;
    const int dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 693899;
}

void SetCalendarDay(int dayNumber, DateParts& parts) noexcept {
    const int z = dayNumber + 693899;
    const int era = z / 146097;
    const int dayOfEra = z % 146097;
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int m = (5 * dayOfYear + 2) / 153;
    parts.day = dayOfYear - (153 * m + 2) / 5 + 1;
    parts.month = m < 10 ? m + 3 : m - 9;
    parts.year = yearOfEra + era * 400 + (parts.month <= 2 ? 1 : 0);
}

int DaysInMonth(int year, int month) noexcept {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month == 2 && leap ? 29 : kDays[month - 1];
}

struct DayAndSecond {
    int day;
    int second;
};

DayAndSecond Split(double serial) noexcept {
    const double whole = std::trunc(serial);
    auto day = static_cast<int>(whole);
    auto second = static_cast<int>(std::lround(std::fabs(serial - whole) * kSecondsPerDay));
    if (second == kSecondsPerDay) {
        if (day == kLastDay) return {day, kSecondsPerDay - 1};
        ++day;
        second = 0;
    }
    return {day, second};
}

}  // namespace

bool IsSerial(double serial) noexcept { return serial > kFirstDay - 1 && serial < kLastDay + 1; }

std::optional<double> SerialOf(const DateParts& p) noexcept {
    if (p.year < kMinYear || p.year > kMaxYear || p.month < 1 || p.month > kMonthsPerYear || p.day < 1) {
        return std::nullopt;
    }
    if (p.day > DaysInMonth(p.year, p.month)) return std::nullopt;
    if (p.hour < 0 || p.hour > 23 || p.minute < 0 || p.minute > 59 || p.second < 0 || p.second > 59) {
        return std::nullopt;
    }
    const int day = NumberOfDay(p.year, p.month, p.day);
    const int second = p.hour * kSecondsPerHour + p.minute * kSecondsPerMinute + p.second;
    const double time = static_cast<double>(second) / kSecondsPerDay;
    return day < 0 ? day - time : day + time;
}

std::optional<double> SerialOfDay(int year, int month, int day) noexcept {
    if (year < 0 || year > kMaxYear) return std::nullopt;
    // In 64 bits: month and day may be any Integer or Long.
    const std::int64_t months = std::int64_t{FullYear(year)} * kMonthsPerYear + month - 1;
    constexpr std::int64_t kFirst = (kMinYear - 100) * std::int64_t{kMonthsPerYear};
    constexpr std::int64_t kLast = (kMaxYear + 100) * std::int64_t{kMonthsPerYear};
    if (months < kFirst || months > kLast) return std::nullopt;
    const auto firstYear = static_cast<int>(months / kMonthsPerYear);
    const auto firstMonth = static_cast<int>(months % kMonthsPerYear) + 1;
    const std::int64_t number = std::int64_t{NumberOfDay(firstYear, firstMonth, 1)} + day - 1;
    if (number < kFirstDay || number > kLastDay) return std::nullopt;
    return static_cast<double>(number);
}

int FullYear(int year) noexcept {
    constexpr int kCentury = 100;
    constexpr int kFirstOfLastCentury = 30;
    if (year < 0 || year >= kCentury) return year;
    return year + (year < kFirstOfLastCentury ? 2000 : 1900);
}

DateParts PartsOf(double serial) noexcept {
    const auto [day, second] = Split(serial);
    DateParts parts{};
    SetCalendarDay(day, parts);
    parts.hour = second / kSecondsPerHour;
    parts.minute = second / kSecondsPerMinute % 60;
    parts.second = second % kSecondsPerMinute;
    return parts;
}

int SecondOfDay(double serial) noexcept { return Split(serial).second; }

std::int64_t DayNumber(double serial) noexcept { return static_cast<std::int64_t>(std::trunc(serial)); }

int WeekdayOf(std::int64_t dayNumber, int first) noexcept {
    // 1899-12-30 was a Saturday, six days after a Sunday.
    const std::int64_t days = dayNumber + 6 - (first - 1);
    return static_cast<int>((days % kDaysPerWeek + kDaysPerWeek) % kDaysPerWeek) + 1;
}

}  // namespace kpTables::text
