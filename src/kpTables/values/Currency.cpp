#include "kpTables/Currency.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "kpTables/Error.h"
#include "kpTables/values/Decimal.h"

namespace kpTables {

namespace {

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t kScaleU = Currency::kScale;

std::uint64_t Magnitude(std::int64_t value) {
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

Currency FromMagnitude(std::uint64_t magnitude, bool negative) {
    constexpr std::uint64_t kLimit = std::uint64_t{1} << 63;
    if (magnitude > (negative ? kLimit : kLimit - 1)) Raise(ErrorNumber::Overflow);
    return Currency::FromScaled(static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude));
}

std::uint64_t CheckedAdd(std::uint64_t a, std::uint64_t b) {
    if (a > std::numeric_limits<std::uint64_t>::max() - b) Raise(ErrorNumber::Overflow);
    return a + b;
}

std::uint64_t CheckedMultiply(std::uint64_t a, std::uint64_t b) {
    if (b != 0 && a > std::numeric_limits<std::uint64_t>::max() / b) Raise(ErrorNumber::Overflow);
    return a * b;
}

}  // namespace

Currency Currency::FromDouble(double value) {
    const double product = value * static_cast<double>(kScale);
    constexpr double kLimit = 9223372036854775808.0;
    if (!(product >= -kLimit && product < kLimit)) Raise(ErrorNumber::Overflow);
    // What the product lost decides near a tie, and holds whole ten-thousandths where the product is large.
    const double lost = std::fma(value, static_cast<double>(kScale), -product);
    const double whole = std::floor(product);
    double above = product - whole;
    double beyond = lost;
    double carried = 0;
    if (above == 0) {
        carried = std::floor(lost);
        above = lost - carried;
        beyond = 0;
    }
    if (whole == -kLimit && carried < 0) Raise(ErrorNumber::Overflow);
    std::int64_t scaled = static_cast<std::int64_t>(whole) + static_cast<std::int64_t>(carried);
    if (above > 0.5 || (above == 0.5 && (beyond > 0 || (beyond == 0 && (scaled & 1))))) ++scaled;
    return FromScaled(scaled);
}

Currency Currency::FromLong(std::int64_t value) {
    if (value > kMax / kScale || value < kMin / kScale) Raise(ErrorNumber::Overflow);
    return FromScaled(value * kScale);
}

Currency Currency::FromDecimalText(std::string_view text) {
    const auto number = values::Decimal::ReadPlain(text);
    if (!number) Raise(ErrorNumber::TypeMismatch);
    return number->ToCurrency();
}

double Currency::ToDouble() const noexcept { return static_cast<double>(scaled_) / static_cast<double>(kScale); }

std::string Currency::ToText() const {
    char text[24];
    char* at = text;
    if (scaled_ < 0) *at++ = '-';
    const std::uint64_t magnitude = Magnitude(scaled_);
    at = std::to_chars(at, text + sizeof text, magnitude / kScaleU).ptr;
    if (auto fraction = static_cast<int>(magnitude % kScaleU); fraction != 0) {
        *at++ = '.';
        for (int unit = 1000; fraction != 0; fraction %= unit, unit /= 10) {
            *at++ = static_cast<char>('0' + fraction / unit);
        }
    }
    return {text, at};
}

Currency Currency::operator-() const {
    if (scaled_ == kMin) Raise(ErrorNumber::Overflow);
    return FromScaled(-scaled_);
}

Currency operator+(Currency a, Currency b) {
    if (b.scaled_ > 0 ? a.scaled_ > kMax - b.scaled_ : a.scaled_ < kMin - b.scaled_) Raise(ErrorNumber::Overflow);
    return Currency::FromScaled(a.scaled_ + b.scaled_);
}

Currency operator-(Currency a, Currency b) {
    if (b.scaled_ > 0 ? a.scaled_ < kMin + b.scaled_ : a.scaled_ > kMax + b.scaled_) Raise(ErrorNumber::Overflow);
    return Currency::FromScaled(a.scaled_ - b.scaled_);
}

Currency operator*(Currency a, Currency b) {
    // (ah + al) * (bh + bl) with h whole units and l ten-thousandths, so that no product needs 128 bits.
    const std::uint64_t ah = Magnitude(a.scaled_) / kScaleU, al = Magnitude(a.scaled_) % kScaleU;
    const std::uint64_t bh = Magnitude(b.scaled_) / kScaleU, bl = Magnitude(b.scaled_) % kScaleU;
    const std::uint64_t tail = al * bl;
    std::uint64_t scaled = CheckedMultiply(CheckedMultiply(ah, bh), kScaleU);
    scaled = CheckedAdd(scaled, ah * bl);
    scaled = CheckedAdd(scaled, al * bh);
    scaled = CheckedAdd(scaled, tail / kScaleU);
    const std::uint64_t rest = tail % kScaleU;
    if (rest > kScaleU / 2 || (rest == kScaleU / 2 && (scaled & 1))) scaled = CheckedAdd(scaled, 1);
    return FromMagnitude(scaled, (a.scaled_ < 0) != (b.scaled_ < 0));
}

}  // namespace kpTables
