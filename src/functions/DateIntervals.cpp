// DateAdd, DateDiff, DatePart and Weekday.
#include <cstdint>

#include "functions/Bodies.h"
#include "functions/Fault.h"
#include "kpTables/text/Message.h"
#include "text/Ascii.h"
#include "text/Calendar.h"

namespace kpTables::functions {

namespace {

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

/// Which week is the first of its year, with Visual Basic's numbers.
enum FirstWeek { WithFirstOfJanuary = 1, WithFourDays = 2, FullWeek = 3 };

using text::DateParts;
using text::DayNumber;
using text::kDaysPerWeek;
using text::kMonthsPerQuarter;
using text::kMonthsPerYear;
using text::PartsOf;
using text::SerialOf;
using text::WeekdayOf;

constexpr std::int64_t kSecondsPerMinute = text::kSecondsPerMinute;
constexpr std::int64_t kSecondsPerHour = text::kSecondsPerHour;
constexpr std::int64_t kSecondsPerDay = text::kSecondsPerDay;

Interval IntervalOf(std::string_view text) {
    struct Name {
        std::string_view text;
        Interval interval;
    };
    constexpr Name kNames[] = {
        {"yyyy", Interval::Year}, {"q", Interval::Quarter}, {"m", Interval::Month}, {"y", Interval::DayOfYear},
        {"d", Interval::Day},     {"w", Interval::Weekday}, {"ww", Interval::Week}, {"h", Interval::Hour},
        {"n", Interval::Minute},  {"s", Interval::Second},
    };
    for (const Name& name : kNames) {
        if (text::EqualsIgnoringCase(name.text, text)) return name.interval;
    }
    Raise(FaultNumber::InvalidCall, Message("{1} is no interval", text));
}

/// The start of a valid day.
double StartOf(const DateParts& p) { return *SerialOf({p.year, p.month, p.day, 0, 0, 0}); }

std::int64_t SecondOf(double date) {
    const DateParts p = PartsOf(date);
    return DayNumber(StartOf(p)) * kSecondsPerDay + p.hour * kSecondsPerHour + p.minute * kSecondsPerMinute + p.second;
}

std::int64_t FloorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

std::int64_t FloorModulo(std::int64_t a, std::int64_t b) { return (a % b + b) % b; }

int FirstWeekday(const Arguments& a, int index) {
    const std::int32_t first = a.Count() > index ? a.Whole(index) : 1;
    if (first < 0 || first > kDaysPerWeek) Raise(FaultNumber::InvalidCall);
    return first == 0 ? 1 : first;
}

int FirstWeekRule(const Arguments& a, int index) {
    const std::int32_t rule = a.Count() > index ? a.Whole(index) : WithFirstOfJanuary;
    if (rule < 0 || rule > FullWeek) Raise(FaultNumber::InvalidCall);
    return rule == 0 ? WithFirstOfJanuary : rule;
}

double MonthsLater(double date, std::int64_t months) {
    const DateParts p = PartsOf(date);
    const std::int64_t month = std::int64_t{p.year} * kMonthsPerYear + p.month - 1 + months;
    DateParts parts = p;
    parts.year = static_cast<int>(FloorDivide(month, kMonthsPerYear));
    parts.month = static_cast<int>(FloorModulo(month, kMonthsPerYear)) + 1;
    // In a shorter month, its last day replaces the missing ones.
    for (; parts.day > 0; --parts.day) {
        if (const auto result = SerialOf(parts)) return *result;
    }
    Raise(FaultNumber::InvalidCall);
}

double SecondsLater(double date, std::int64_t seconds) {
    const std::int64_t second = SecondOf(date) + seconds;
    const std::int64_t day = FloorDivide(second, kSecondsPerDay);
    const double time = static_cast<double>(FloorModulo(second, kSecondsPerDay)) / kSecondsPerDay;
    return CheckedDate(day < 0 ? static_cast<double>(day) - time : static_cast<double>(day) + time);
}

double Added(Interval interval, std::int64_t count, double date) {
    switch (interval) {
        case Interval::Year:
            return MonthsLater(date, count * kMonthsPerYear);
        case Interval::Quarter:
            return MonthsLater(date, count * kMonthsPerQuarter);
        case Interval::Month:
            return MonthsLater(date, count);
        case Interval::DayOfYear:
        case Interval::Day:
        case Interval::Weekday:
            return SecondsLater(date, count * kSecondsPerDay);
        case Interval::Week:
            return SecondsLater(date, count * kDaysPerWeek * kSecondsPerDay);
        case Interval::Hour:
            return SecondsLater(date, count * kSecondsPerHour);
        case Interval::Minute:
            return SecondsLater(date, count * kSecondsPerMinute);
        case Interval::Second:
            return SecondsLater(date, count);
    }
    return date;
}

std::int64_t MonthNumber(double date) {
    const DateParts p = PartsOf(date);
    return std::int64_t{p.year} * kMonthsPerYear + p.month - 1;
}

/// The number of interval boundaries between the two.
std::int64_t Difference(Interval interval, double from, double to, int firstWeekday) {
    const auto seconds = [&](std::int64_t unit) {
        return FloorDivide(SecondOf(to), unit) - FloorDivide(SecondOf(from), unit);
    };
    switch (interval) {
        case Interval::Year:
            return PartsOf(to).year - PartsOf(from).year;
        case Interval::Quarter:
            return FloorDivide(MonthNumber(to), kMonthsPerQuarter) - FloorDivide(MonthNumber(from), kMonthsPerQuarter);
        case Interval::Month:
            return MonthNumber(to) - MonthNumber(from);
        case Interval::DayOfYear:
        case Interval::Day:
            return DayNumber(to) - DayNumber(from);
        case Interval::Weekday:
            return (DayNumber(to) - DayNumber(from)) / kDaysPerWeek;
        case Interval::Week: {
            const auto weekStart = [&](double date) {
                return DayNumber(date) - WeekdayOf(DayNumber(date), firstWeekday);
            };
            return (weekStart(to) - weekStart(from)) / kDaysPerWeek;
        }
        case Interval::Hour:
            return seconds(kSecondsPerHour);
        case Interval::Minute:
            return seconds(kSecondsPerMinute);
        case Interval::Second:
            return seconds(1);
    }
    return 0;
}

std::int64_t FirstDayOfYear(int year) {
    const auto january = text::SerialOfDay(year, 1, 1);
    if (!january) Raise(FaultNumber::InvalidCall);
    return DayNumber(*january);
}

/// The day on which week 1 of the year begins; it may lie in the year before.
std::int64_t FirstWeekStart(int year, int firstWeekday, int rule) {
    const std::int64_t january = FirstDayOfYear(year);
    const int weekday = WeekdayOf(january, firstWeekday);
    const std::int64_t start = january - (weekday - 1);
    const int daysInYear = kDaysPerWeek - (weekday - 1);
    const int needed = rule == FullWeek ? kDaysPerWeek : rule == WithFourDays ? 4 : 1;
    return daysInYear >= needed ? start : start + kDaysPerWeek;
}

std::int64_t WeekOf(double date, int firstWeekday, int rule) {
    const std::int64_t day = DayNumber(date);
    const int year = PartsOf(date).year;
    std::int64_t start = FirstWeekStart(year, firstWeekday, rule);
    if (day < start) start = FirstWeekStart(year - 1, firstWeekday, rule);
    // With rules 2 and 3 the last days of December may belong to week 1 of the next year.
    if (rule != WithFirstOfJanuary && day >= FirstWeekStart(year + 1, firstWeekday, rule)) return 1;
    return (day - start) / kDaysPerWeek + 1;
}

}  // namespace

void DateAdd(const Arguments& a, Answer& answer) { answer.Date(Added(IntervalOf(a.Text(0)), a.Whole(1), a.Date(2))); }

void TimeSerial(const Arguments& a, Answer& answer) {
    const std::int64_t seconds = a.Whole(0) * kSecondsPerHour + a.Whole(1) * kSecondsPerMinute + a.Whole(2);
    answer.Date(SecondsLater(0, seconds));
}

void DateDiff(const Arguments& a, Answer& answer) {
    answer.Whole(Difference(IntervalOf(a.Text(0)), a.Date(1), a.Date(2), FirstWeekday(a, 3)));
}

void DatePart(const Arguments& a, Answer& answer) {
    const double date = a.Date(1);
    const DateParts p = PartsOf(date);
    const int firstWeekday = FirstWeekday(a, 2);
    switch (IntervalOf(a.Text(0))) {
        case Interval::Year:
            return answer.Whole(p.year);
        case Interval::Quarter:
            return answer.Whole((p.month - 1) / kMonthsPerQuarter + 1);
        case Interval::Month:
            return answer.Whole(p.month);
        case Interval::DayOfYear:
            return answer.Whole(DayNumber(date) - FirstDayOfYear(p.year) + 1);
        case Interval::Day:
            return answer.Whole(p.day);
        case Interval::Weekday:
            return answer.Whole(WeekdayOf(DayNumber(date), firstWeekday));
        case Interval::Week:
            return answer.Whole(WeekOf(date, firstWeekday, FirstWeekRule(a, 3)));
        case Interval::Hour:
            return answer.Whole(p.hour);
        case Interval::Minute:
            return answer.Whole(p.minute);
        case Interval::Second:
            return answer.Whole(p.second);
    }
}

void Weekday(const Arguments& a, Answer& answer) { answer.Whole(WeekdayOf(DayNumber(a.Date(0)), FirstWeekday(a, 1))); }

}  // namespace kpTables::functions
