#include "recordset/FindIndex.h"

#include <algorithm>

namespace kpTables::recordset {

FindIndex::FindIndex(std::size_t rows, const std::function<std::uint64_t(std::size_t)>& keyAt) {
    entries_.reserve(rows);
    for (std::size_t i = 0; i < rows; ++i) entries_.push_back({keyAt(i), static_cast<std::uint32_t>(i)});
    std::sort(entries_.begin(), entries_.end());
}

std::optional<std::size_t> FindIndex::FirstFrom(std::size_t start, std::uint64_t key,
                                                const std::function<bool(std::size_t)>& matches) const {
    const Entry from{key, static_cast<std::uint32_t>(start)};
    for (auto at = std::lower_bound(entries_.begin(), entries_.end(), from); at != entries_.end() && at->key == key;
         ++at) {
        if (matches(at->position)) return at->position;
    }
    return std::nullopt;
}

}  // namespace kpTables::recordset
