#include "sql/Names.h"

#include <algorithm>

namespace kpTables::sql {

namespace {

char Folded(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool SameName(std::string_view a, std::string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return Folded(x) == Folded(y); });
}

std::string FoldedName(std::string_view name) {
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), Folded);
    return folded;
}

}  // namespace kpTables::sql
