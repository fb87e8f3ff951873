// An index for repeated Finds on one column.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace kpTables::recordset {

/// Positions of a recordset's rows by the key of one column. Rows that were appended later are not in it.
class FindIndex {
public:
    FindIndex(std::size_t rows, const std::function<std::uint64_t(std::size_t position)>& keyAt);

    std::size_t Covered() const noexcept { return entries_.size(); }
    /// First position from start on that has the key and that matches accepts; unequal values may share a key.
    std::optional<std::size_t> FirstFrom(std::size_t start, std::uint64_t key,
                                         const std::function<bool(std::size_t position)>& matches) const;

private:
    struct Entry {
        std::uint64_t key;
        std::uint32_t position;
        friend auto operator<=>(const Entry&, const Entry&) = default;
    };
    std::vector<Entry> entries_;
};

}  // namespace kpTables::recordset
