#include "kpTables/Date.h"

#include <charconv>
#include <cmath>

#include "kpTables/Error.h"

namespace kpTables {

namespace {

constexpr int kSecondsPerDay = 86400;
constexpr int kFirstDay = -657434;  // 0100-01-01
constexpr int kLastDay = 2958465;   // 9999-12-31
constexpr int kMinYear = 100, kMaxYear = 9999;

// Days since 1899-12-30 in the proleptic Gregorian calendar; the year runs from March, so that a leap day ends it.
int DayNumber(int year, int month, int day) {
    const int y = month > 2 ? year : year - 1;
    const int era = (y >= 0 ? y : y - 399) / 400;
    const int yearOfEra = y - era * 400;
    const int dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 693899;
}

void SetCalendarDay(int dayNumber, Date::Parts& parts) {
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

int DaysInMonth(int year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month == 2 && leap ? 29 : kDays[month - 1];
}

struct DayAndSecond {
    int day;
    int second;
};

DayAndSecond Split(double serial) {
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

char* PutPadded(char* at, int value, int width) {
    for (int i = width - 1; i >= 0; --i, value /= 10) at[i] = static_cast<char>('0' + value % 10);
    return at + width;
}

char* PutNumber(char* at, int value) { return std::to_chars(at, at + 8, value).ptr; }

}  // namespace

Date Date::FromSerial(double serial) {
    if (!(serial > kFirstDay - 1 && serial < kLastDay + 1)) Raise(ErrorNumber::Overflow);
    Date d;
    d.serial_ = serial;
    return d;
}

std::optional<Date> Date::FromParts(const Parts& p) {
    if (p.year < kMinYear || p.year > kMaxYear || p.month < 1 || p.month > 12 || p.day < 1) return std::nullopt;
    if (p.day > DaysInMonth(p.year, p.month)) return std::nullopt;
    if (p.hour < 0 || p.hour > 23 || p.minute < 0 || p.minute > 59 || p.second < 0 || p.second > 59) {
        return std::nullopt;
    }
    const int day = DayNumber(p.year, p.month, p.day);
    const double time = static_cast<double>(p.hour * 3600 + p.minute * 60 + p.second) / kSecondsPerDay;
    Date d;
    d.serial_ = day < 0 ? day - time : day + time;
    return d;
}

Date Date::FromYearMonthDay(int year, int month, int day) {
    if (year < 0 || year > kMaxYear) Raise(ErrorNumber::InvalidCall);
    if (year < 100) year += year < 30 ? 2000 : 1900;
    // In 64 bits: month and day may be any Integer or Long.
    std::int64_t months = std::int64_t{year} * 12 + month - 1;
    constexpr std::int64_t kFirst = (kMinYear - 100) * std::int64_t{12};
    constexpr std::int64_t kLast = (kMaxYear + 100) * std::int64_t{12};
    if (months < kFirst || months > kLast) Raise(ErrorNumber::InvalidCall);
    const int first = DayNumber(static_cast<int>(months / 12), static_cast<int>(months % 12) + 1, 1);
    const std::int64_t number = std::int64_t{first} + day - 1;
    if (number < kFirstDay || number > kLastDay) Raise(ErrorNumber::InvalidCall);
    return FromSerial(static_cast<double>(number));
}

Date::Parts Date::ToParts() const {
    const auto [day, second] = Split(serial_);
    Parts parts{};
    SetCalendarDay(day, parts);
    parts.hour = second / 3600;
    parts.minute = second / 60 % 60;
    parts.second = second % 60;
    return parts;
}

bool Date::HasTime() const { return Split(serial_).second != 0; }

double Date::TimeOfDay() const { return static_cast<double>(Split(serial_).second) / kSecondsPerDay; }

std::string Date::ToText() const {
    const auto [day, second] = Split(serial_);
    const Parts p = ToParts();
    char text[32];
    char* at = text;
    if (day != 0) {
        at = PutNumber(at, p.year);
        *at++ = '-';
        at = PutNumber(at, p.month);
        *at++ = '-';
        at = PutNumber(at, p.day);
    }
    if (day == 0 || second != 0) {
        if (day != 0) *at++ = ' ';
        at = PutNumber(at, p.hour);
        *at++ = ':';
        at = PutPadded(at, p.minute, 2);
        *at++ = ':';
        at = PutPadded(at, p.second, 2);
    }
    return {text, at};
}

std::string Date::ToIso(char separator) const {
    const Parts p = ToParts();
    char text[24];
    char* at = PutPadded(text, p.year, 4);
    *at++ = '-';
    at = PutPadded(at, p.month, 2);
    *at++ = '-';
    at = PutPadded(at, p.day, 2);
    if (p.hour != 0 || p.minute != 0 || p.second != 0) {
        *at++ = separator;
        at = PutPadded(at, p.hour, 2);
        *at++ = ':';
        at = PutPadded(at, p.minute, 2);
        *at++ = ':';
        at = PutPadded(at, p.second, 2);
    }
    return {text, at};
}

}  // namespace kpTables
