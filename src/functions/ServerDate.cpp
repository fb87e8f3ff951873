#include "functions/ServerDate.h"

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

}  // namespace

std::optional<double> ReadServerDate(std::string_view text) {
    constexpr std::size_t kDigits = 8;
    const bool unseparated = text.size() == kDigits && text.find_first_not_of("0123456789") == text.npos;
    return text::ParseDate(unseparated ? WithSeparators(text) : WithoutPadding(text));
}

}  // namespace kpTables::functions
