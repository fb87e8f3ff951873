// A set of a recordset's columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kpTables::engines {

class ColumnSet {
public:
    explicit ColumnSet(std::size_t columns = 0) : words_((columns + kBits - 1) / kBits) {}

    void Add(int column) noexcept { WordOf(column) |= BitOf(column); }
    bool Has(int column) const noexcept {
        return (words_[static_cast<std::size_t>(column) / kBits] & BitOf(column)) != 0;
    }
    void Clear() noexcept {
        for (std::uint64_t& word : words_) word = 0;
    }
    bool Empty() const noexcept {
        for (const std::uint64_t word : words_) {
            if (word != 0) return false;
        }
        return true;
    }
    friend bool operator==(const ColumnSet&, const ColumnSet&) = default;

private:
    static constexpr std::size_t kBits = 64;
    static std::uint64_t BitOf(int column) noexcept {
        return std::uint64_t{1} << (static_cast<std::size_t>(column) % kBits);
    }
    std::uint64_t& WordOf(int column) noexcept { return words_[static_cast<std::size_t>(column) / kBits]; }

    std::vector<std::uint64_t> words_;
};

}  // namespace kpTables::engines
