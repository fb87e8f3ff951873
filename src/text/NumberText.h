// Text forms of numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kpTables::text {

/// At most 15 significant digits, shortest form, no leading zero lost: "0.5", "66.6666666666667". Plain while neither
/// side of the point needs more than 15 places, else with an exponent: "0.00001", "1E+15", "3.33333333333333E-04".
std::string NumberText(double value);
std::string WholeText(std::int64_t value);

/// The size of a number's longest text form.
inline constexpr std::size_t kLongestNumberText = 40;
/// As NumberText and WholeText, into a buffer of that size; answers the end of what was written.
char* WriteNumber(char* buffer, double value) noexcept;
char* WriteWhole(char* buffer, std::int64_t value) noexcept;

/// "True" or "False".
constexpr const char* BooleanText(bool value) noexcept { return value ? "True" : "False"; }

}  // namespace kpTables::text
