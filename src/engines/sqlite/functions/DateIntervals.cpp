// DateAdd, DateDiff, DatePart and Weekday.
#include <cmath>
#include <cstdint>

#include "Function.h"
#include "kpTables/Error.h"
#include "text/Ascii.h"

namespace kpTables::sqlite {

namespace {

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

/// How the first week of a year is told, with Visual Basic's numbers.
enum FirstWeek { WithFirstOfJanuary = 1, WithFourDays = 2, FullWeek = 3 };

constexpr int kDaysPerWeek = 7;
constexpr int kMonthsPerYear = 12;
constexpr int kMonthsPerQuarter = 3;
constexpr std::int64_t kSecondsPerMinute = 60;
constexpr std::int64_t kSecondsPerHour = 3600;
constexpr std::int64_t kSecondsPerDay = 86400;

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
    Raise(ErrorNumber::InvalidCall, std::string(text) + " is no interval");
}

/// Days since 1899-12-30, without the time.
std::int64_t DayOf(Date date) { return static_cast<std::int64_t>(std::trunc(date.Serial())); }

std::int64_t SecondOf(Date date) {
    const Date::Parts p = date.ToParts();
    return DayOf(*Date::FromParts({p.year, p.month, p.day, 0, 0, 0})) * kSecondsPerDay + p.hour * kSecondsPerHour +
           p.minute * kSecondsPerMinute + p.second;
}

std::int64_t FloorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

std::int64_t FloorModulo(std::int64_t a, std::int64_t b) { return (a % b + b) % b; }

/// 1 to 7 from the weekday that counts as the first (1 Sunday ... 7 Saturday).
int WeekdayOf(std::int64_t day, int first) {
    // 1899-12-30 was a Saturday, six days after a Sunday.
    return static_cast<int>(FloorModulo(day + 6 - (first - 1), kDaysPerWeek)) + 1;
}

int FirstWeekday(const Arguments& a, int index) {
    const std::int32_t first = a.Count() > index ? a.Whole(index) : 1;
    if (first < 0 || first > kDaysPerWeek) Raise(ErrorNumber::InvalidCall);
    return first == 0 ? 1 : first;
}

int FirstWeekRule(const Arguments& a, int index) {
    const std::int32_t rule = a.Count() > index ? a.Whole(index) : WithFirstOfJanuary;
    if (rule < 0 || rule > FullWeek) Raise(ErrorNumber::InvalidCall);
    return rule == 0 ? WithFirstOfJanuary : rule;
}

Date MonthsLater(Date date, std::int64_t months) {
    const Date::Parts p = date.ToParts();
    const std::int64_t month = std::int64_t{p.year} * kMonthsPerYear + p.month - 1 + months;
    Date::Parts parts = p;
    parts.year = static_cast<int>(FloorDivide(month, kMonthsPerYear));
    parts.month = static_cast<int>(FloorModulo(month, kMonthsPerYear)) + 1;
    // The last day of a shorter month stands for the days that it lacks.
    for (; parts.day > 0; --parts.day) {
        if (const auto result = Date::FromParts(parts)) return *result;
    }
    Raise(ErrorNumber::InvalidCall);
}

Date SecondsLater(Date date, std::int64_t seconds) {
    const std::int64_t second = SecondOf(date) + seconds;
    const std::int64_t day = FloorDivide(second, kSecondsPerDay);
    const double time = static_cast<double>(FloorModulo(second, kSecondsPerDay)) / kSecondsPerDay;
    return Date::FromSerial(day < 0 ? static_cast<double>(day) - time : static_cast<double>(day) + time);
}

Date Added(Interval interval, std::int64_t count, Date date) {
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

std::int64_t MonthNumber(Date date) {
    const Date::Parts p = date.ToParts();
    return std::int64_t{p.year} * kMonthsPerYear + p.month - 1;
}

/// How many boundaries of the interval lie between the two.
std::int64_t Difference(Interval interval, Date from, Date to, int firstWeekday) {
    const auto seconds = [&](std::int64_t unit) {
        return FloorDivide(SecondOf(to), unit) - FloorDivide(SecondOf(from), unit);
    };
    switch (interval) {
        case Interval::Year:
            return to.Year() - from.Year();
        case Interval::Quarter:
            return FloorDivide(MonthNumber(to), kMonthsPerQuarter) - FloorDivide(MonthNumber(from), kMonthsPerQuarter);
        case Interval::Month:
            return MonthNumber(to) - MonthNumber(from);
        case Interval::DayOfYear:
        case Interval::Day:
            return DayOf(to) - DayOf(from);
        case Interval::Weekday:
            return (DayOf(to) - DayOf(from)) / kDaysPerWeek;
        case Interval::Week: {
            const auto weekStart = [&](Date date) { return DayOf(date) - WeekdayOf(DayOf(date), firstWeekday); };
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

std::int64_t FirstDayOfYear(int year) { return DayOf(Date::FromYearMonthDay(year, 1, 1)); }

/// The day on which week 1 of the year begins; it may lie in the year before.
std::int64_t FirstWeekStart(int year, int firstWeekday, int rule) {
    const std::int64_t january = FirstDayOfYear(year);
    const int weekday = WeekdayOf(january, firstWeekday);
    const std::int64_t start = january - (weekday - 1);
    const int daysInYear = kDaysPerWeek - (weekday - 1);
    const int needed = rule == FullWeek ? kDaysPerWeek : rule == WithFourDays ? 4 : 1;
    return daysInYear >= needed ? start : start + kDaysPerWeek;
}

std::int64_t WeekOf(Date date, int firstWeekday, int rule) {
    const std::int64_t day = DayOf(date);
    const int year = date.Year();
    std::int64_t start = FirstWeekStart(year, firstWeekday, rule);
    if (day < start) start = FirstWeekStart(year - 1, firstWeekday, rule);
    // With rules 2 and 3 the last days of December may belong to week 1 of the next year.
    if (rule != WithFirstOfJanuary && day >= FirstWeekStart(year + 1, firstWeekday, rule)) return 1;
    return (day - start) / kDaysPerWeek + 1;
}

void DateAdd(const Arguments& a, Answer& answer) { answer.Date(Added(IntervalOf(a.Text(0)), a.Whole(1), a.Date(2))); }

void TimeSerial(const Arguments& a, Answer& answer) {
    const std::int64_t seconds = a.Whole(0) * kSecondsPerHour + a.Whole(1) * kSecondsPerMinute + a.Whole(2);
    answer.Date(SecondsLater(Date(), seconds));
}

void DateDiff(const Arguments& a, Answer& answer) {
    answer.Whole(Difference(IntervalOf(a.Text(0)), a.Date(1), a.Date(2), FirstWeekday(a, 3)));
}

void DatePart(const Arguments& a, Answer& answer) {
    const Date date = a.Date(1);
    const Date::Parts p = date.ToParts();
    const int firstWeekday = FirstWeekday(a, 2);
    switch (IntervalOf(a.Text(0))) {
        case Interval::Year:
            return answer.Whole(p.year);
        case Interval::Quarter:
            return answer.Whole((p.month - 1) / kMonthsPerQuarter + 1);
        case Interval::Month:
            return answer.Whole(p.month);
        case Interval::DayOfYear:
            return answer.Whole(DayOf(date) - FirstDayOfYear(p.year) + 1);
        case Interval::Day:
            return answer.Whole(p.day);
        case Interval::Weekday:
            return answer.Whole(WeekdayOf(DayOf(date), firstWeekday));
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

void Weekday(const Arguments& a, Answer& answer) { answer.Whole(WeekdayOf(DayOf(a.Date(0)), FirstWeekday(a, 1))); }

constexpr ScalarFunction kFunctions[] = {
    {"kp_dateadd", DateAdd},       {"kp_datediff", DateDiff}, {"kp_datepart", DatePart},
    {"kp_timeserial", TimeSerial}, {"kp_weekday", Weekday},
};

}  // namespace

std::span<const ScalarFunction> DateIntervalFunctions() noexcept { return kFunctions; }

}  // namespace kpTables::sqlite
