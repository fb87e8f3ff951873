#include "text/Decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <string>
#include <system_error>

#include "text/Ascii.h"

namespace kpTables::text {

namespace {

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

double HexOrOctal(std::string_view digits, int base) noexcept {
    std::uint64_t value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    return static_cast<double>(value);
}

}  // namespace

void Decimal::AppendDigit(char digit, bool afterPoint) noexcept {
    if (count_ == 0 && digit == '0') {
        if (afterPoint) --exponent_;
        return;
    }
    if (count_ < kMaxDigits) {
        digits_[static_cast<std::size_t>(count_++)] = digit;
        if (afterPoint) --exponent_;
        return;
    }
    if (digit != '0') cut_ = true;
    if (!afterPoint) ++exponent_;
}

Decimal Decimal::FromWhole(std::int64_t value) noexcept {
    Decimal d;
    d.negative_ = value < 0;
    const auto end = std::to_chars(d.digits_.data(), d.digits_.data() + kMaxDigits, value < 0 ? -value : value).ptr;
    d.count_ = static_cast<int>(end - d.digits_.data());
    return d;
}

double Decimal::ToDouble() const noexcept {
    if (count_ == 0) return 0;
    // One more digit where some were cut off, so that no false tie appears.
    std::array<char, kMaxDigits + 32> text;
    char* at = text.data();
    std::memcpy(at, digits_.data(), static_cast<std::size_t>(count_));
    at += count_;
    std::int64_t exponent = exponent_;
    if (cut_) {
        *at++ = '1';
        --exponent;
    }
    *at++ = 'e';
    at = std::to_chars(at, text.data() + text.size(), exponent).ptr;
    double value = 0;
    if (std::from_chars(text.data(), at, value).ec == std::errc::result_out_of_range) {
        value = exponent + count_ > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return negative_ ? -value : value;
}

std::optional<std::int64_t> Decimal::ToAmount() const noexcept {
    constexpr std::uint64_t kLimit = std::uint64_t{1} << 63;
    const std::int64_t shift = exponent_ + 4;
    const std::int64_t wholeDigits = count_ == 0 ? 0 : count_ + shift;
    if (wholeDigits > 19) return std::nullopt;
    std::uint64_t scaled = 0;
    for (std::int64_t i = 0; i < wholeDigits; ++i) {
        scaled =
            scaled * 10 + (i < count_ ? static_cast<std::uint64_t>(digits_[static_cast<std::size_t>(i)] - '0') : 0);
    }
    if (wholeDigits >= 0 && wholeDigits < count_) {
        const auto first = static_cast<std::size_t>(wholeDigits);
        bool more = cut_;
        for (std::size_t i = first + 1; i < static_cast<std::size_t>(count_); ++i) more = more || digits_[i] != '0';
        if (digits_[first] > '5' || (digits_[first] == '5' && (more || (scaled & 1)))) ++scaled;
    }
    if (scaled > (negative_ ? kLimit : kLimit - 1)) return std::nullopt;
    return static_cast<std::int64_t>(negative_ ? 0 - scaled : scaled);
}

/// Scans a text once.
class DecimalReader {
public:
    explicit DecimalReader(std::string_view text) : rest_(text) {}

    std::optional<Decimal> Read() {
        SkipBlanks();
        while (!rest_.empty() && IsBlank(rest_.back())) rest_.remove_suffix(1);
        if (rest_.size() > 2 && rest_[0] == '&') return ReadRadix();
        if (!ReadLead()) return std::nullopt;
        if (!ReadDigits(true) || !ReadExponent() || !ReadTail()) return std::nullopt;
        return number_;
    }

    std::optional<Decimal> ReadPlain() {
        if (Take('-')) {
            number_.negative_ = true;
        } else {
            Take('+');
        }
        if (!ReadDigits(false) || !rest_.empty()) return std::nullopt;
        return number_;
    }

private:
    void SkipBlanks() {
        while (!rest_.empty() && IsBlank(rest_.front())) rest_.remove_prefix(1);
    }
    bool Take(std::string_view piece) {
        if (!rest_.starts_with(piece)) return false;
        rest_.remove_prefix(piece.size());
        return true;
    }
    bool Take(char c) { return Take(std::string_view(&c, 1)); }

    bool TakeSign() {
        if (signed_ || rest_.empty() || (rest_[0] != '-' && rest_[0] != '+')) return false;
        number_.negative_ = rest_[0] == '-';
        signed_ = true;
        rest_.remove_prefix(1);
        return true;
    }
    bool TakeCurrencySign() {
        if (currency_ || !(Take('$') || Take("\u00A5") || Take("\uFFE5"))) return false;
        currency_ = true;
        return true;
    }

    // Sign, bracket and currency sign, each once, in any order, blanks between them.
    bool ReadLead() {
        for (;;) {
            SkipBlanks();
            if (TakeSign() || TakeCurrencySign()) continue;
            if (signed_ || !Take('(')) return true;
            number_.negative_ = signed_ = bracket_ = true;
        }
    }

    bool ReadDigits(bool thousands) {
        bool any = false;
        bool afterPoint = false;
        for (; !rest_.empty(); rest_.remove_prefix(1)) {
            const char c = rest_[0];
            if (IsDigit(c)) {
                number_.AppendDigit(c, afterPoint);
                any = true;
            } else if (c == '.' && !afterPoint) {
                afterPoint = true;
            } else if (c != ',' || !thousands || !any || afterPoint) {
                break;
            }
        }
        return any;
    }

    bool ReadExponent() {
        if (rest_.empty() || std::string_view("eEdD").find(rest_[0]) == std::string_view::npos) return true;
        rest_.remove_prefix(1);
        const bool minus = Take('-');
        if (!minus) Take('+');
        if (rest_.empty() || !IsDigit(rest_[0])) return false;
        std::int64_t exponent = 0;
        for (; !rest_.empty() && IsDigit(rest_[0]); rest_.remove_prefix(1)) {
            if (exponent < 1'000'000) exponent = exponent * 10 + (rest_[0] - '0');
        }
        number_.exponent_ += minus ? -exponent : exponent;
        return true;
    }

    bool ReadTail() {
        for (;;) {
            SkipBlanks();
            if (rest_.empty()) return !bracket_;
            if (bracket_ && Take(')')) {
                bracket_ = false;
            } else if (!TakeSign() && !TakeCurrencySign()) {
                return false;
            }
        }
    }

    std::optional<Decimal> ReadRadix() {
        const char letter = static_cast<char>(rest_[1] | 0x20);
        const int base = letter == 'h' ? 16 : letter == 'o' ? 8 : 0;
        if (base == 0) return std::nullopt;
        std::uint32_t bits = 0;
        const char* end = rest_.data() + rest_.size();
        const auto [at, error] = std::from_chars(rest_.data() + 2, end, bits, base);
        if (error != std::errc() || at != end) return std::nullopt;
        // The bit pattern of a Long.
        return Decimal::FromWhole(static_cast<std::int32_t>(bits));
    }

    std::string_view rest_;
    Decimal number_;
    bool signed_ = false;
    bool currency_ = false;
    bool bracket_ = false;
};

std::optional<Decimal> Decimal::Read(std::string_view text) { return DecimalReader(text).Read(); }
std::optional<Decimal> Decimal::ReadPlain(std::string_view text) { return DecimalReader(text).ReadPlain(); }

std::optional<double> ParseNumber(std::string_view text) {
    const auto number = Decimal::Read(text);
    if (!number) return std::nullopt;
    const double value = number->ToDouble();
    if (std::isinf(value)) return std::nullopt;
    return value;
}

double LeadingNumber(std::string_view text) {
    std::string digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
                 [](char c) { return c != ' ' && c != '\t' && c != '\n' && c != '\r'; });
    if (digits.size() > 1 && digits[0] == '&') {
        const std::string_view rest = std::string_view(digits).substr(2);
        if (digits[1] == 'H' || digits[1] == 'h') return HexOrOctal(rest, 16);
        if (digits[1] == 'O' || digits[1] == 'o') return HexOrOctal(rest, 8);
    }
    // from_chars accepts no plus sign, and only E as an exponent's letter.
    if (digits.starts_with('+')) digits.erase(0, 1);
    std::replace_if(
        digits.begin(), digits.end(), [](char c) { return c == 'd' || c == 'D'; }, 'e');
    const bool number = digits.find_first_of("0123456789") <= digits.find_first_not_of("-.");
    double value = 0;
    if (number && !digits.empty() && (IsDigit(digits[0]) || digits[0] == '-' || digits[0] == '.')) {
        std::from_chars(digits.data(), digits.data() + digits.size(), value);
    }
    return value;
}

}  // namespace kpTables::text
