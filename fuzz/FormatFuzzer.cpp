// Format takes any pattern for any number, date and text, and answers with a text of sensible size; a number written
// with enough places reads back as the number.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Input.h"
#include "text/Calendar.h"
#include "text/DateText.h"
#include "text/Decimal.h"
#include "text/Format.h"
#include "text/Utf8.h"

namespace {

using kpTables::fuzz::Input;
using kpTables::fuzz::Require;
namespace text = kpTables::text;

/// The longest part of a pattern's result: dddddd, for example, gives "Wednesday, September 30, 2004", and a single
/// digit place a whole number of 309 digits.
constexpr std::size_t kMostOfOnePlace = 420;

void CheckResult(const std::optional<std::string>& result, std::string_view pattern, std::string_view value) {
    if (!result) return;
    Require(result->size() <= (pattern.size() + 1) * kMostOfOnePlace + value.size() * 4, "of sensible size", pattern);
    if (text::IsValidUtf8(pattern) && text::IsValidUtf8(value)) {
        Require(text::IsValidUtf8(*result), "whole characters", pattern);
    }
}

/// A pattern of zeros with as many places behind the point.
void CheckPlaces(double number, unsigned places) {
    constexpr double kMostExact = 1e14;
    if (!(std::abs(number) < kMostExact)) return;
    const std::string pattern = places == 0 ? "0" : "0." + std::string(places, '0');
    const auto written = text::FormatNumber(number, pattern);
    Require(written.has_value(), "a number has a text", pattern);
    const auto read = text::ParseNumber(*written);
    Require(read.has_value(), "what is written is a number", *written);
    // Half of the last place, and what 15 significant digits leave out.
    const double tolerance = 0.5000001 * std::pow(10.0, -static_cast<double>(places)) + std::abs(number) * 1e-14;
    Require(std::abs(*read - number) <= tolerance, "written to its nearest last place", *written);
    const auto grouped = text::FormatNumber(number, "#,##" + pattern);
    std::string plain = grouped.value_or("");
    plain.erase(std::remove(plain.begin(), plain.end(), ','), plain.end());
    Require(plain == *written, "commas add nothing else", plain);
}

void CheckDate(double serial) {
    const auto date = text::FormatDate(serial, "yyyy-mm-dd");
    const auto time = text::FormatDate(serial, "hh:nn:ss");
    Require(date && time, "a date has a text");
    const text::DateParts parts = text::PartsOf(serial);
    // The year is written with the digits that it has.
    const auto read = text::ParseDate(*date + ' ' + *time);
    Require(read.has_value(), "what is written is a date", *date + ' ' + *time);
    const text::DateParts again = text::PartsOf(*read);
    Require(parts.year == again.year && parts.month == again.month && parts.day == again.day &&
                parts.hour == again.hour && parts.minute == again.minute && parts.second == again.second,
            "a date reads back", *date + ' ' + *time);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto number = input.Raw<double>();
    const unsigned places = input.Byte() % 8;
    const std::string_view pattern = input.Line();
    const std::string_view value = input.Rest();
    CheckResult(text::FormatNumber(number, pattern), pattern, {});
    CheckResult(text::FormatText(value, pattern), pattern, value);
    CheckPlaces(number, places);
    // The same bytes as a date of the calendar.
    const double serial = std::fmod(number, 3e6);
    if (text::IsSerial(serial)) {
        CheckResult(text::FormatDate(serial, pattern), pattern, {});
        CheckDate(serial);
    }
    return 0;
}
