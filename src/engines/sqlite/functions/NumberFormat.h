// Numbers by a pattern of Format, and the number at a text's start.
#pragma once

#include <string>
#include <string_view>

namespace kpTables::sqlite {

/// 0 and # are digit places, with a point, a comma between places for thousands and behind them for a thousandth, % for
/// hundredths and E+00 for an exponent; a second part after a semicolon formats negative numbers, a third one zero.
/// Without a pattern the default text form.
std::string NumberByPattern(double number, std::string_view pattern);

/// What Val answers: blanks skipped, digits as far as they make a number, &H and &O; 0 when there is none.
double LeadingNumber(std::string_view text);

}  // namespace kpTables::sqlite
