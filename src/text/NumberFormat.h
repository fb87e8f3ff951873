// Numbers by a pattern of Format.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kpTables::text {

/// 0 and # are digit places, with a point, a comma between places for thousands and behind them for a thousandth, % for
/// hundredths and E+00 for an exponent; a second part after a semicolon formats negative numbers, a third one zero.
/// Without a pattern the default text form. Nothing for a number that % makes too large.
std::optional<std::string> NumberByPattern(double number, std::string_view pattern);

}  // namespace kpTables::text
