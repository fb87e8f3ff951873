// Products of two numbers of 64 bits, exact, in what compilers for systems of any width have.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>

namespace kpTables::bookkeeping {

/// a x b, in 128 bits.
class Product {
public:
    constexpr Product(std::uint64_t a, std::uint64_t b) noexcept {
        constexpr int kHalf = 32;
        constexpr std::uint64_t kLower = 0xFFFFFFFF;
        const std::uint64_t lower = (a & kLower) * (b & kLower);
        const std::uint64_t one = (a >> kHalf) * (b & kLower) + (lower >> kHalf);
        const std::uint64_t other = (a & kLower) * (b >> kHalf) + (one & kLower);
        high_ = (a >> kHalf) * (b >> kHalf) + (one >> kHalf) + (other >> kHalf);
        low_ = other << kHalf | (lower & kLower);
    }

    friend constexpr auto operator<=>(const Product&, const Product&) noexcept = default;

    /// The product / divisor, half to even; nothing when that needs more than 64 bits. divisor: 1 to 2^63.
    constexpr std::optional<std::uint64_t> RoundedQuotient(std::uint64_t divisor) const noexcept {
        if (high_ >= divisor) return std::nullopt;
        std::uint64_t quotient = 0;
        std::uint64_t rest = high_;
        if (high_ == 0) {
            quotient = low_ / divisor;
            rest = low_ % divisor;
        } else {
            for (int bit = 63; bit >= 0; --bit) {
                rest = rest << 1 | (low_ >> bit & 1);
                quotient = quotient << 1 | (rest >= divisor);
                if (rest >= divisor) rest -= divisor;
            }
        }
        const bool isUp = rest > divisor - rest || (rest == divisor - rest && (quotient & 1) != 0);
        if (!isUp) return quotient;
        return quotient + 1 != 0 ? std::optional(quotient + 1) : std::nullopt;
    }

private:
    // Compared in this order.
    std::uint64_t high_ = 0;
    std::uint64_t low_ = 0;
};

}  // namespace kpTables::bookkeeping
