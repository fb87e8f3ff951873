// Names as a book compares them.
#pragma once

#include <algorithm>
#include <string_view>

namespace kpTables::kpbook {

/// The same name, ASCII letters without regard to case.
inline bool SameName(std::string_view a, std::string_view b) noexcept {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(a, b, [lower](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace kpTables::kpbook
