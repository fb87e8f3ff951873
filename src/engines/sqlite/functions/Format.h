// Format as Visual Basic has it: values to text by a pattern.
#pragma once

#include <string>
#include <string_view>

#include "kpTables/Date.h"

namespace kpTables::sqlite {

/// A date by a pattern of dates; a pattern of numbers shows it as its number of days, one of texts its text form.
std::string FormatDate(Date date, std::string_view pattern);

/// A number by a pattern of numbers; a pattern of dates takes it for a number of days, one of texts takes its text
/// form.
std::string FormatNumber(double number, std::string_view pattern);

/// A text by a pattern of texts. Other patterns take what it reads as, and leave it unchanged when it is neither a date
/// nor a number.
std::string FormatText(std::string_view text, std::string_view pattern);

}  // namespace kpTables::sqlite
