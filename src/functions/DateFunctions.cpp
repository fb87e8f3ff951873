// Dates: their parts, and dates made of parts.
#include <cmath>
#include <string>

#include "functions/Bodies.h"
#include "functions/Fault.h"
#include "kpTables/text/Message.h"
#include "text/Calendar.h"
#include "text/LocalTime.h"

namespace kpTables::functions {

namespace {

double LocalTime() {
    const std::tm local = text::LocalTime();
    constexpr int kTmYearZero = 1900;
    // A leap second becomes the second before it.
    const int second = local.tm_sec < text::kSecondsPerMinute ? local.tm_sec : text::kSecondsPerMinute - 1;
    const auto date = text::SerialOf(
        {local.tm_year + kTmYearZero, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, second});
    if (!date) Raise(FaultNumber::Overflow);
    return *date;
}

double TimeOfDay(double date) { return static_cast<double>(text::SecondOfDay(date)) / text::kSecondsPerDay; }

}  // namespace

void Today(const Arguments&, Answer& answer) { answer.Date(std::trunc(LocalTime())); }
void Now(const Arguments&, Answer& answer) { answer.Date(LocalTime()); }
void Time(const Arguments&, Answer& answer) { answer.Date(TimeOfDay(LocalTime())); }
void DateValue(const Arguments& a, Answer& answer) { answer.Date(std::trunc(a.Date(0))); }
void TimeValue(const Arguments& a, Answer& answer) { answer.Date(TimeOfDay(a.Date(0))); }

void Year(const Arguments& a, Answer& answer) { answer.Whole(text::PartsOf(a.Date(0)).year); }
void Month(const Arguments& a, Answer& answer) { answer.Whole(text::PartsOf(a.Date(0)).month); }
void Day(const Arguments& a, Answer& answer) { answer.Whole(text::PartsOf(a.Date(0)).day); }
void Hour(const Arguments& a, Answer& answer) { answer.Whole(text::PartsOf(a.Date(0)).hour); }
void Minute(const Arguments& a, Answer& answer) { answer.Whole(text::PartsOf(a.Date(0)).minute); }
void Second(const Arguments& a, Answer& answer) { answer.Whole(text::PartsOf(a.Date(0)).second); }

void DayAndTime(const Arguments& a, Answer& answer) {
    const double date = a.Date(0);
    answer.Number(text::PartsOf(date).day + TimeOfDay(date));
}

void DateSerial(const Arguments& a, Answer& answer) {
    const auto date = text::SerialOfDay(a.Whole(0), a.Whole(1), a.Whole(2));
    if (!date) Raise(FaultNumber::InvalidCall);
    answer.Date(*date);
}

void YearMonthDay(const Arguments& a, Answer& answer) {
    const auto date = text::SerialOf({text::FullYear(a.Whole(0)), a.Whole(1), a.Whole(2), 0, 0, 0});
    if (!date) {
        Raise(FaultNumber::TypeMismatch, Message("there is no day {1}-{2}-{3}", a.Text(0), a.Text(1), a.Text(2)));
    }
    answer.Date(*date);
}

void AddDays(const Arguments& a, Answer& answer) { answer.Date(a.Date(0) + a.Number(1)); }
void DaysBetween(const Arguments& a, Answer& answer) { answer.Number(a.Date(0) - a.Date(1)); }
void DateNumber(const Arguments& a, Answer& answer) { answer.Number(a.Date(0)); }

}  // namespace kpTables::functions
