// Visual Basic's arithmetic.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>

#include "functions/Bodies.h"
#include "functions/Fault.h"
#include "text/Amount.h"

namespace kpTables::functions {

namespace {

constexpr int kCurrencyDecimals = 4;
/// A double has no further decimals that rounding could change.
constexpr int kMostDecimals = 22;

/// units times unit, which fits unless rounding went beyond the last whole unit.
std::int64_t Scaled(std::int64_t units, std::int64_t unit) {
    if (units > std::numeric_limits<std::int64_t>::max() / unit ||
        units < std::numeric_limits<std::int64_t>::min() / unit) {
        Raise(FaultNumber::Overflow);
    }
    return units * unit;
}

/// Of a negative number those of its two's complement.
std::string Digits(std::int32_t number, const char* format) {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), format, static_cast<unsigned>(number));
    return digits.data();
}

std::int32_t Decimals(const Arguments& a) {
    const std::int32_t decimals = a.Whole(1);
    if (decimals < 0) Raise(FaultNumber::InvalidCall);
    return decimals;
}

/// Both sides of \ and Mod: 32-bit whole numbers, widened so that the quotient of the lowest one fits.
struct WholePair {
    std::int64_t left;
    std::int64_t right;
};

WholePair WholeOperands(const Arguments& a) {
    const WholePair pair{a.Whole(0), a.Whole(1)};
    if (pair.right == 0) Raise(FaultNumber::DivisionByZero);
    return pair;
}

}  // namespace

void BitXor(const Arguments& a, Answer& answer) { answer.Whole(a.Whole(0) ^ a.Whole(1)); }
void BitImp(const Arguments& a, Answer& answer) { answer.Whole(~a.Whole(0) | a.Whole(1)); }

void CurrencyProduct(const Arguments& a, Answer& answer) {
    const auto product = text::AmountProduct(a.Amount(0), a.Amount(1));
    if (!product) Raise(FaultNumber::Overflow);
    answer.Whole(*product);
}

/// An engine may switch to doubles when whole numbers overflow.
void CurrencyFit(const Arguments& a, Answer& answer) {
    if (!a.IsWhole(0)) Raise(FaultNumber::Overflow);
    answer.Whole(a.Amount(0));
}

void CurrencyFix(const Arguments& a, Answer& answer) { answer.Whole(a.Amount(0) - a.Amount(0) % text::kAmountScale); }

void CurrencyInt(const Arguments& a, Answer& answer) {
    const bool down = a.Amount(0) % text::kAmountScale < 0;
    answer.Whole(Scaled(a.Amount(0) / text::kAmountScale - (down ? 1 : 0), text::kAmountScale));
}

void CurrencyRound(const Arguments& a, Answer& answer) {
    const std::int32_t decimals = Decimals(a);
    if (decimals >= kCurrencyDecimals) return answer.Whole(a.Amount(0));
    constexpr std::array<std::int64_t, kCurrencyDecimals> kUnits = {10000, 1000, 100, 10};
    const std::int64_t unit = kUnits[static_cast<std::size_t>(decimals)];
    std::int64_t units = a.Amount(0) / unit;
    const std::int64_t rest = std::abs(a.Amount(0) % unit);
    if (rest * 2 > unit || (rest * 2 == unit && units % 2 != 0)) units += a.Amount(0) < 0 ? -1 : 1;
    answer.Whole(Scaled(units, unit));
}

void BitAnd(const Arguments& a, Answer& answer) { answer.Whole(a.Whole(0) & a.Whole(1)); }

void Hex(const Arguments& a, Answer& answer) { answer.Text(Digits(a.Whole(0), "%X")); }

void Oct(const Arguments& a, Answer& answer) { answer.Text(Digits(a.Whole(0), "%o")); }

void Divide(const Arguments& a, Answer& answer) {
    if (a.Number(1) == 0) Raise(FaultNumber::DivisionByZero);
    answer.Number(a.Number(0) / a.Number(1));
}

void WholeQuotient(const Arguments& a, Answer& answer) {
    const auto [left, right] = WholeOperands(a);
    if (left / right > std::numeric_limits<std::int32_t>::max()) Raise(FaultNumber::Overflow);
    answer.Whole(left / right);
}

void Remainder(const Arguments& a, Answer& answer) {
    const auto [left, right] = WholeOperands(a);
    answer.Whole(left % right);
}

void Power(const Arguments& a, Answer& answer) {
    const double base = a.Number(0);
    const double exponent = a.Number(1);
    const bool undefined = (base < 0 && exponent != std::floor(exponent)) || (base == 0 && exponent < 0);
    if (undefined) Raise(FaultNumber::InvalidCall);
    answer.Number(std::pow(base, exponent));
}

void Fix(const Arguments& a, Answer& answer) { answer.Number(std::trunc(a.Number(0))); }
void Int(const Arguments& a, Answer& answer) { answer.Number(std::floor(a.Number(0))); }

void Round(const Arguments& a, Answer& answer) {
    const std::int32_t decimals = Decimals(a);
    const double factor = std::pow(10.0, decimals > kMostDecimals ? kMostDecimals : decimals);
    const double scaled = a.Number(0) * factor;
    // A number this large has no decimals to round.
    answer.Number(std::isfinite(scaled) ? std::nearbyint(scaled) / factor : a.Number(0));
}

void Sign(const Arguments& a, Answer& answer) { answer.Whole((a.Number(0) > 0) - (a.Number(0) < 0)); }

void SquareRoot(const Arguments& a, Answer& answer) {
    if (a.Number(0) < 0) Raise(FaultNumber::InvalidCall);
    answer.Number(std::sqrt(a.Number(0)));
}

void Sine(const Arguments& a, Answer& answer) { answer.Number(std::sin(a.Number(0))); }
void Cosine(const Arguments& a, Answer& answer) { answer.Number(std::cos(a.Number(0))); }
void Tangent(const Arguments& a, Answer& answer) { answer.Number(std::tan(a.Number(0))); }
void ArcTangent(const Arguments& a, Answer& answer) { answer.Number(std::atan(a.Number(0))); }

/// Partition(number, start, stop, interval): the range that the number is in, as "  0: 99".
void Partition(const Arguments& a, Answer& answer) {
    const std::int64_t number = a.Whole(0);
    const std::int64_t start = a.Whole(1);
    const std::int64_t stop = a.Whole(2);
    const std::int64_t interval = a.Whole(3);
    if (start < 0 || stop <= start || interval < 1) Raise(FaultNumber::InvalidCall);
    const auto width = std::max(std::to_string(start - 1).size(), std::to_string(stop + 1).size());
    const auto padded = [&](const std::string& digits) {
        return digits.size() < width ? std::string(width - digits.size(), ' ') + digits : digits;
    };
    const std::int64_t first = number < start ? 0 : start + (number - start) / interval * interval;
    const std::string low = number < start ? "" : std::to_string(number > stop ? stop + 1 : first);
    const std::string high = number < start  ? std::to_string(start - 1)
                             : number > stop ? ""
                                             : std::to_string(std::min(first + interval - 1, stop));
    answer.Text(padded(low) + ":" + padded(high));
}

void Exponential(const Arguments& a, Answer& answer) { answer.Number(std::exp(a.Number(0))); }

void Logarithm(const Arguments& a, Answer& answer) {
    if (a.Number(0) <= 0) Raise(FaultNumber::InvalidCall);
    answer.Number(std::log(a.Number(0)));
}

}  // namespace kpTables::functions
