// A number as written, before its type is chosen.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kpTables::text {

/// Sign, significant digits and a power of ten: digits * 10^exponent. Keeps enough digits to round every type
/// correctly.
class Decimal {
public:
    /// Reads a text as Visual Basic reads a number: blanks around, a sign before or after, brackets for minus,
    /// thousands separators, a currency sign, an exponent with E or D, &H and &O.
    static std::optional<Decimal> Read(std::string_view text);
    /// Reads sign, digits and one point, nothing else.
    static std::optional<Decimal> ReadPlain(std::string_view text);

    /// Infinite when too large for a Double.
    double ToDouble() const noexcept;
    /// As ten-thousandths, half to even; nothing when out of range.
    std::optional<std::int64_t> ToAmount() const noexcept;

private:
    friend class DecimalReader;

    void AppendDigit(char digit, bool afterPoint) noexcept;
    static Decimal FromWhole(std::int64_t value) noexcept;

    static constexpr int kMaxDigits = 64;
    bool negative_ = false;
    bool cut_ = false;  // a digit other than 0 did not fit any more
    int count_ = 0;
    std::int64_t exponent_ = 0;
    std::array<char, kMaxDigits> digits_{};
};

/// Reads a text as Decimal::Read does; nothing when it is no number or too large for a Double.
std::optional<double> ParseNumber(std::string_view text);

/// The result of Val: blanks skipped, the longest prefix that is a number, &H and &O; 0 when there is none.
double LeadingNumber(std::string_view text);

}  // namespace kpTables::text
