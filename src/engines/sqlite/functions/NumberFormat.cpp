#include "NumberFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

#include "kpTables/Convert.h"
#include "kpTables/Date.h"

namespace kpTables::sqlite {

namespace {

bool IsDigitPlace(char c) noexcept { return c == '0' || c == '#'; }
bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

/// One part of a pattern taken to pieces.
struct Layout {
    std::string_view before;  ///< literal text in front of the first place
    std::string_view after;   ///< and behind the last one
    int leastDigits = 0;      ///< zeros before the point
    int leastDecimals = 0;    ///< zeros behind it
    int mostDecimals = 0;
    bool thousands = false;
    bool point = false;
};

Layout LayoutOf(std::string_view part) {
    Layout layout;
    const auto first = part.find_first_of("0#.");
    if (first == part.npos) return {part, {}, 0, 0, 0, false, false};
    const auto last = part.find_last_of("0#.");
    layout.before = part.substr(0, first);
    layout.after = part.substr(last + 1);
    bool zeros = false;
    for (const char c : part.substr(first, last - first + 1)) {
        if (c == '.') layout.point = true;
        if (c == ',') layout.thousands = true;
        if (!IsDigitPlace(c)) continue;
        if (layout.point) {
            ++layout.mostDecimals;
            if (c == '0') layout.leastDecimals = layout.mostDecimals;
        } else {
            zeros = zeros || c == '0';
            if (zeros) ++layout.leastDigits;
        }
    }
    return layout;
}

std::string Grouped(std::string digits) {
    constexpr std::size_t kGroup = 3;
    for (std::size_t at = digits.size(); at > kGroup;) {
        at -= kGroup;
        digits.insert(at, 1, ',');
    }
    return digits;
}

/// The digits of a number that is not negative, rounded as Format rounds: a half goes up.
std::string FixedDigits(double number, int decimals) {
    const double factor = std::pow(10.0, decimals);
    // Fifteen digits decide whether it is a half, so that 2.675 counts as one although its double lies below.
    const auto shown = ParseNumber(Text(number * factor));
    const double rounded = std::floor(shown.value_or(number * factor) + 0.5) / factor;
    char buffer[400];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, rounded, std::chars_format::fixed, decimals).ptr;
    return {buffer, end};
}

std::string FormatPart(double magnitude, std::string_view part) {
    const Layout layout = LayoutOf(part);
    if (layout.leastDigits == 0 && layout.mostDecimals == 0 && part.find('#') == part.npos) return std::string(part);
    if (part.find('%') != part.npos) magnitude *= 100;
    std::string digits = FixedDigits(magnitude, layout.mostDecimals);
    const auto point = std::min(digits.find('.'), digits.size());
    std::string decimals = point < digits.size() ? digits.substr(point + 1) : std::string();
    digits.resize(point);
    if (digits == "0") digits.clear();
    if (digits.size() < static_cast<std::size_t>(layout.leastDigits)) {
        digits.insert(0, static_cast<std::size_t>(layout.leastDigits) - digits.size(), '0');
    }
    while (decimals.size() > static_cast<std::size_t>(layout.leastDecimals) && decimals.back() == '0') {
        decimals.pop_back();
    }
    std::string out(layout.before);
    out += layout.thousands ? Grouped(digits) : digits;
    if (layout.point) out += '.' + decimals;
    return out.append(layout.after);
}

std::vector<std::string_view> PartsOf(std::string_view pattern) {
    std::vector<std::string_view> parts;
    for (;;) {
        const auto end = pattern.find(';');
        parts.push_back(pattern.substr(0, end));
        if (end == pattern.npos) return parts;
        pattern.remove_prefix(end + 1);
    }
}

double HexOrOctal(std::string_view digits, int base) noexcept {
    std::uint64_t value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    return static_cast<double>(value);
}

}  // namespace

std::string FormatNumber(double number, std::string_view pattern) {
    if (pattern.find_first_of("yYdDhH") != pattern.npos) return Format(Date::FromSerial(number), pattern);
    if (pattern.find_first_of("0#") == pattern.npos) return Format(number, pattern);
    const auto parts = PartsOf(pattern);
    if (number < 0 && parts.size() > 1) return FormatPart(-number, parts[1]);
    if (number == 0 && parts.size() > 2) return FormatPart(0, parts[2]);
    const std::string text = FormatPart(std::abs(number), parts[0]);
    const bool shownNegative = number < 0 && text.find_first_of("123456789") != text.npos;
    return shownNegative ? '-' + text : text;
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
    // The reader takes no plus sign, and E alone as an exponent's letter.
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

}  // namespace kpTables::sqlite
