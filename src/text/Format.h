// Visual Basic's Format: values to text by a pattern. Nothing means an overflow: a number that a pattern makes too
// large, or one that is no date.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kpTables::text {

/// A date, given by its serial number, by a pattern of dates; a pattern of numbers shows it as its number of days, one
/// of texts its text form.
std::optional<std::string> FormatDate(double serial, std::string_view pattern);

/// A number by a pattern of numbers; a pattern of dates treats it as a number of days, one of texts uses its text form.
std::optional<std::string> FormatNumber(double number, std::string_view pattern);

/// A text by a pattern of texts. Other patterns take what it reads as, and leave it unchanged when it is neither a date
/// nor a number.
std::optional<std::string> FormatText(std::string_view text, std::string_view pattern);

}  // namespace kpTables::text
