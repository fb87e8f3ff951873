// Amounts, prices and quantities of the sample as whole numbers, so that every figure is exact.
#pragma once

#include <cstdint>
#include <string>

namespace kpTables::sample {

using Money = std::int64_t;     ///< ten-thousandths of a yuan
using Quantity = std::int64_t;  ///< thousandths of the product's unit

constexpr Money kYuan = 10000;
constexpr Quantity kUnit = 1000;

/// The quotient of two non-negative numbers, rounded half to even.
constexpr std::int64_t DivideHalfEven(std::int64_t dividend, std::int64_t divisor) noexcept {
    const std::int64_t quotient = dividend / divisor;
    const std::int64_t twice = 2 * (dividend % divisor);
    return quotient + (twice > divisor || (twice == divisor && quotient % 2 != 0) ? 1 : 0);
}

constexpr Money Amount(Money price, Quantity quantity) noexcept { return DivideHalfEven(price * quantity, kUnit); }
/// Amount over quantity, to the ten-thousandth.
constexpr Money UnitPrice(Money amount, Quantity quantity) noexcept {
    return quantity == 0 ? 0 : DivideHalfEven(amount * kUnit, quantity);
}
/// The next lower multiple of step.
constexpr Quantity Floor(Quantity quantity, Quantity step) noexcept { return quantity / step * step; }
/// The next lower multiple of a jiao (a tenth of a yuan) from 20 yuan on, of a fen below.
constexpr Money RoundPrice(Money price) noexcept {
    const Money step = price >= 20 * kYuan ? kYuan / 10 : kYuan / 100;
    return price / step * step;
}

/// Shortest decimal form of a count of 10^-decimals.
std::string DecimalText(std::int64_t value, int decimals);
/// At least width digits, padded with zeros.
std::string Digits(int value, int width);
inline std::string MoneyText(Money value) { return DecimalText(value, 4); }
inline std::string QuantityText(Quantity value) { return DecimalText(value, 3); }

}  // namespace kpTables::sample
