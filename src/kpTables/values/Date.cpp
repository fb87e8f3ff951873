#include "kpTables/Date.h"

#include "kpTables/Error.h"
#include "text/Calendar.h"
#include "text/DateText.h"

namespace kpTables {

namespace {

/// What the ground floor answers is a serial in range.
std::optional<Date> DateOf(std::optional<double> serial) {
    return serial ? std::optional(Date::FromSerial(*serial)) : std::nullopt;
}

}  // namespace

Date Date::FromSerial(double serial) {
    if (!text::IsSerial(serial)) Raise(ErrorNumber::Overflow);
    Date d;
    d.serial_ = serial;
    return d;
}

std::optional<Date> Date::FromParts(const Parts& p) {
    return DateOf(text::SerialOf({p.year, p.month, p.day, p.hour, p.minute, p.second}));
}

Date Date::FromYearMonthDay(int year, int month, int day) {
    const auto serial = text::SerialOfDay(year, month, day);
    if (!serial) Raise(ErrorNumber::InvalidCall);
    return FromSerial(*serial);
}

std::optional<Date> Date::Parse(std::string_view text) { return DateOf(text::ParseDate(text)); }

std::optional<Date> Date::ParseIso(std::string_view text) { return DateOf(text::ParseIsoDate(text)); }

Date::Parts Date::ToParts() const {
    const auto p = text::PartsOf(serial_);
    return {p.year, p.month, p.day, p.hour, p.minute, p.second};
}

bool Date::HasTime() const { return text::SecondOfDay(serial_) != 0; }

double Date::TimeOfDay() const { return static_cast<double>(text::SecondOfDay(serial_)) / text::kSecondsPerDay; }

std::string Date::ToText() const { return text::DateText(serial_); }

std::string Date::ToIso(char separator) const { return text::IsoDateText(serial_, separator); }

}  // namespace kpTables
