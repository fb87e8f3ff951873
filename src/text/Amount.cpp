#include "text/Amount.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace kpTables::text {

namespace {

constexpr std::uint64_t kScale = kAmountScale;

std::uint64_t Magnitude(std::int64_t value) noexcept {
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

/// False when the sum does not fit.
bool Add(std::uint64_t& sum, std::uint64_t summand) noexcept {
    if (sum > std::numeric_limits<std::uint64_t>::max() - summand) return false;
    sum += summand;
    return true;
}

/// False when the product does not fit.
bool Multiply(std::uint64_t& product, std::uint64_t factor) noexcept {
    if (factor != 0 && product > std::numeric_limits<std::uint64_t>::max() / factor) return false;
    product *= factor;
    return true;
}

/// Half to even by the remainder of a division by the scale; nothing when it does not fit.
std::optional<std::int64_t> Rounded(std::uint64_t magnitude, std::uint64_t rest, bool negative) noexcept {
    const bool up = rest > kScale / 2 || (rest == kScale / 2 && (magnitude & 1));
    if (up && !Add(magnitude, 1)) return std::nullopt;
    constexpr std::uint64_t kLimit = std::uint64_t{1} << 63;
    if (magnitude > (negative ? kLimit : kLimit - 1)) return std::nullopt;
    return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

}  // namespace

std::optional<std::int64_t> AmountOf(double value) noexcept {
    constexpr auto kFactor = static_cast<double>(kAmountScale);
    const double product = value * kFactor;
    constexpr double kLimit = 9223372036854775808.0;
    if (!(product >= -kLimit && product < kLimit)) return std::nullopt;
    // The product's rounding error decides near a tie, and is whole ten-thousandths where the product is large.
    const double lost = std::fma(value, kFactor, -product);
    const double whole = std::floor(product);
    double above = product - whole;
    double beyond = lost;
    double carried = 0;
    if (above == 0) {
        carried = std::floor(lost);
        above = lost - carried;
        beyond = 0;
    }
    if (whole == -kLimit && carried < 0) return std::nullopt;
    std::int64_t amount = static_cast<std::int64_t>(whole) + static_cast<std::int64_t>(carried);
    if (above > 0.5 || (above == 0.5 && (beyond > 0 || (beyond == 0 && (amount & 1))))) ++amount;
    return amount;
}

std::optional<std::int64_t> AmountOfWhole(std::int64_t value) noexcept {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / kAmountScale;
    constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min() / kAmountScale;
    if (value > kMost || value < kLeast) return std::nullopt;
    return value * kAmountScale;
}

std::optional<std::int64_t> AmountProduct(std::int64_t a, std::int64_t b) noexcept {
    const bool negative = (a < 0) != (b < 0);
    const std::uint64_t left = Magnitude(a), right = Magnitude(b);
    constexpr int kHalf = 32;
    if ((left | right) >> kHalf == 0) return Rounded(left * right / kScale, left * right % kScale, negative);
    // (ah + al) * (bh + bl) with h whole units and l ten-thousandths, so that no product needs 128 bits.
    const std::uint64_t ah = left / kScale, al = left % kScale;
    const std::uint64_t bh = right / kScale, bl = right % kScale;
    const std::uint64_t tail = al * bl;
    std::uint64_t scaled = ah;
    if (!Multiply(scaled, bh) || !Multiply(scaled, kScale)) return std::nullopt;
    if (!Add(scaled, ah * bl) || !Add(scaled, al * bh) || !Add(scaled, tail / kScale)) return std::nullopt;
    return Rounded(scaled, tail % kScale, negative);
}

std::string AmountText(std::int64_t amount) {
    char text[24];
    char* at = text;
    if (amount < 0) *at++ = '-';
    const std::uint64_t magnitude = Magnitude(amount);
    at = std::to_chars(at, text + sizeof text, magnitude / kScale).ptr;
    if (auto fraction = static_cast<int>(magnitude % kScale); fraction != 0) {
        *at++ = '.';
        for (int unit = 1000; fraction != 0; fraction %= unit, unit /= 10) {
            *at++ = static_cast<char>('0' + fraction / unit);
        }
    }
    return {text, at};
}

}  // namespace kpTables::text
