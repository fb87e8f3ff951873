// Case-insensitive comparison of ASCII letters, as for names of columns and members.
#pragma once

#include <cstddef>
#include <string_view>

namespace kpTables::text {

constexpr char Lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

constexpr bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

constexpr bool EqualsIgnoringCase(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (Lower(a[i]) != Lower(b[i])) return false;
    }
    return true;
}

}  // namespace kpTables::text
