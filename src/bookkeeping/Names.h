// Names of tables and columns, which are compared without regard to the case of ASCII letters.
#pragma once

#include <algorithm>
#include <string_view>

namespace kpTables::bookkeeping {

constexpr char LowerLetter(char byte) noexcept {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

inline bool IsSameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, LowerLetter, LowerLetter);
}

}  // namespace kpTables::bookkeeping
