#include "functions/ServerDate.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "text/DateText.h"

namespace kpTables::functions {

namespace {

std::string WithSeparators(std::string_view digits) {
    constexpr std::size_t kMonth = 4;
    constexpr std::size_t kDay = 6;
    std::string text(digits);
    return text.insert(kDay, 1, '-').insert(kMonth, 1, '-');
}

std::string WithoutPadding(std::string_view text) {
    std::string plain;
    for (const char c : text) {
        const bool separator = c == '-' || c == '/';
        if (separator) plain.erase(plain.find_last_not_of(' ') + 1);
        const bool behind = !plain.empty() && (plain.back() == '-' || plain.back() == '/');
        if (c != ' ' || !behind) plain += c;
    }
    return plain;
}

// A book keeps whole seconds.
std::string_view WithoutFraction(std::string_view text) {
    const auto point = text.rfind('.');
    if (point == text.npos || text.rfind(':', point) == text.npos) return text;
    const bool digits = text.find_first_not_of("0123456789", point + 1) == text.npos;
    return digits && point + 1 < text.size() ? text.substr(0, point) : text;
}

}  // namespace

std::optional<double> ReadServerDate(std::string_view text) {
    constexpr std::size_t kDigits = 8;
    text = WithoutFraction(text);
    if (const auto date = text::ParseIsoDate(text)) return date;
    const std::size_t day = std::min(text.find_first_not_of("0123456789"), text.size());
    const bool alone = day == text.size() || text[day] == ' ';
    return text::ParseDate(alone && day == kDigits ? WithSeparators(text) : WithoutPadding(text));
}

}  // namespace kpTables::functions
