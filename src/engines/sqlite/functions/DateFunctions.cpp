// Dates: their parts, and dates made of parts.
#include <cmath>
#include <ctime>

#include "Function.h"
#include "kpTables/Error.h"

namespace kpTables::sqlite {

namespace {

constexpr int kSecondsPerMinute = 60;

Date Now() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    constexpr int kTmYearZero = 1900;
    // A leap second counts as the one before it.
    const int second = local.tm_sec < kSecondsPerMinute ? local.tm_sec : kSecondsPerMinute - 1;
    const auto date = Date::FromParts(
        {local.tm_year + kTmYearZero, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, second});
    if (!date) Raise(ErrorNumber::Overflow);
    return *date;
}

Date WithoutTime(Date date) { return Date::FromSerial(std::trunc(date.Serial())); }
Date TimeAlone(Date date) { return Date::FromSerial(date.TimeOfDay()); }

void Today(const Arguments&, Answer& answer) { answer.Date(WithoutTime(Now())); }
void NowFunction(const Arguments&, Answer& answer) { answer.Date(Now()); }
void Time(const Arguments&, Answer& answer) { answer.Date(TimeAlone(Now())); }
void DateValue(const Arguments& a, Answer& answer) { answer.Date(WithoutTime(a.Date(0))); }
void TimeValue(const Arguments& a, Answer& answer) { answer.Date(TimeAlone(a.Date(0))); }

template <int Date::Parts::*part>
void Part(const Arguments& a, Answer& answer) {
    answer.Whole(a.Date(0).ToParts().*part);
}

void DayAndTime(const Arguments& a, Answer& answer) { answer.Number(a.Date(0).Day() + a.Date(0).TimeOfDay()); }

void DateSerial(const Arguments& a, Answer& answer) {
    answer.Date(Date::FromYearMonthDay(a.Whole(0), a.Whole(1), a.Whole(2)));
}

void YearMonthDay(const Arguments& a, Answer& answer) {
    constexpr int kCenturies = 100;
    constexpr int kFirstOfLastCentury = 30;
    int year = a.Whole(0);
    // A date's text with a two-digit year is read so.
    if (year >= 0 && year < kCenturies) year += year < kFirstOfLastCentury ? 2000 : 1900;
    const auto date = Date::FromParts({year, a.Whole(1), a.Whole(2), 0, 0, 0});
    if (!date) {
        Raise(ErrorNumber::TypeMismatch, "there is no day " + std::string(a.Text(0)) + "-" + std::string(a.Text(1)) +
                                             "-" + std::string(a.Text(2)));
    }
    answer.Date(*date);
}

void AddDays(const Arguments& a, Answer& answer) { answer.Date(Date::FromSerial(a.Date(0).Serial() + a.Number(1))); }

void DaysBetween(const Arguments& a, Answer& answer) { answer.Number(a.Date(0).Serial() - a.Date(1).Serial()); }
void DateNumber(const Arguments& a, Answer& answer) { answer.Number(a.Date(0).Serial()); }

constexpr ScalarFunction kFunctions[] = {
    {"kp_date", Today},
    {"kp_date_add", AddDays},
    {"kp_date_diff", DaysBetween},
    {"kp_date_number", DateNumber},
    {"kp_dateserial", DateSerial},
    {"kp_datevalue", DateValue},
    {"kp_day", Part<&Date::Parts::day>},
    {"kp_day_and_time", DayAndTime},
    {"kp_hour", Part<&Date::Parts::hour>},
    {"kp_minute", Part<&Date::Parts::minute>},
    {"kp_month", Part<&Date::Parts::month>},
    {"kp_now", NowFunction},
    {"kp_second", Part<&Date::Parts::second>},
    {"kp_time", Time},
    {"kp_timevalue", TimeValue},
    {"kp_year", Part<&Date::Parts::year>},
    {"kp_ymd", YearMonthDay},
};

}  // namespace

std::span<const ScalarFunction> DateFunctions() noexcept { return kFunctions; }

}  // namespace kpTables::sqlite
