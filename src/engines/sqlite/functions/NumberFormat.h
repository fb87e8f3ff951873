// Numbers to text by a pattern, and the number at a text's start.
#pragma once

#include <string>
#include <string_view>

namespace kpTables::sqlite {

/// Format(number, pattern) with 0 and # as digit places, a point, a comma for thousands and % for hundredths; a second
/// part after a semicolon formats negative numbers, a third one zero. A pattern of dates formats the number as a date.
std::string FormatNumber(double number, std::string_view pattern);

/// What Val answers: blanks skipped, digits as far as they make a number, &H and &O; 0 when there is none.
double LeadingNumber(std::string_view text);

}  // namespace kpTables::sqlite
