// Amounts of money as 64-bit counts of ten-thousandths: exact arithmetic, rounding half to even. Nothing stands for a
// result out of range.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kpTables::text {

inline constexpr std::int64_t kAmountScale = 10000;

/// Nearest amount, a tie going to the even ten-thousandth. Nothing for a NaN either.
std::optional<std::int64_t> AmountOf(double value) noexcept;
std::optional<std::int64_t> AmountOfWhole(std::int64_t value) noexcept;
std::optional<std::int64_t> AmountProduct(std::int64_t a, std::int64_t b) noexcept;

/// Shortest decimal form: "12.5", "-0.0001", "0". Never an exponent or a separator.
std::string AmountText(std::int64_t amount);

}  // namespace kpTables::text
