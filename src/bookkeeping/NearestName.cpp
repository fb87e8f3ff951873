#include "bookkeeping/NearestName.h"

#include <algorithm>
#include <numeric>

namespace kpTables::bookkeeping {

namespace {

/// Insertions, removals and replacements that make one text the other.
std::size_t Changes(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.back();
}

}  // namespace

std::string NearestName(std::string_view given, const std::vector<std::string>& names) {
    std::string nearest;
    std::size_t fewest = 0;
    for (const std::string& name : names) {
        if (given.empty()) break;
        const bool within = name.find(given) != name.npos || given.find(name) != given.npos;
        const std::size_t changes = within ? 0 : Changes(given, name);
        if (changes * 2 > std::max(given.size(), name.size())) continue;
        if (nearest.empty() || changes < fewest) {
            nearest = name;
            fewest = changes;
        }
    }
    return nearest;
}

}  // namespace kpTables::bookkeeping
