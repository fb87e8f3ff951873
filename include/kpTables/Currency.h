// Visual Basic's fixed-point money type.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace kpTables {

/// A 64-bit count of ten-thousandths. Arithmetic is exact; a result out of range raises error 6 (Overflow).
class Currency {
public:
    static constexpr std::int64_t kScale = 10000;

    constexpr Currency() noexcept = default;
    /// From a count of ten-thousandths, as stored.
    static constexpr Currency FromScaled(std::int64_t tenThousandths) noexcept {
        Currency c;
        c.scaled_ = tenThousandths;
        return c;
    }
    /// Nearest Currency, a tie going to the even ten-thousandth. Error 6 when out of range or not a number.
    static Currency FromDouble(double value);
    static Currency FromLong(std::int64_t value);
    /// Reads plain decimal text (sign, digits, one point); digits past the fourth round half to even, exactly.
    /// Error 13 for any other text, error 6 when out of range.
    static Currency FromDecimalText(std::string_view text);

    constexpr std::int64_t Scaled() const noexcept { return scaled_; }
    double ToDouble() const noexcept;
    /// Shortest decimal form: "12.5", "-0.0001", "0". Never an exponent or a separator.
    std::string ToText() const;

    Currency operator-() const;
    friend Currency operator+(Currency a, Currency b);
    friend Currency operator-(Currency a, Currency b);
    /// Product rounded half to even at the fourth decimal.
    friend Currency operator*(Currency a, Currency b);
    friend constexpr auto operator<=>(Currency, Currency) noexcept = default;

private:
    std::int64_t scaled_ = 0;
};

}  // namespace kpTables
