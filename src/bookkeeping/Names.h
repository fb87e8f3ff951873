// Names of tables and columns, which are compared without regard to the case of ASCII letters.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace kpTables::bookkeeping {

constexpr char LowerLetter(char byte) noexcept {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

inline bool IsSameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, LowerLetter, LowerLetter);
}

/// As statements name a table or a column.
inline std::string Bracketed(const std::string& name) { return "[" + name + "]"; }

}  // namespace kpTables::bookkeeping
