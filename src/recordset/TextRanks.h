// The places of texts in their order, so that many are sorted as numbers and each of them compared but once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "kpTables/MemoryRecordset.h"
#include "recordset/Steps.h"

namespace kpTables::recordset {

class TextRanks {
public:
    /// texts: about how many will be given; few are not searched for those that are alike.
    explicit TextRanks(std::size_t texts) noexcept : searches_(texts > kFew) {}

    /// The text's number, from 0; texts of the same bytes mostly have the same one. The text must live on.
    std::uint32_t NumberOf(std::string_view text);
    /// The place of each number in the order: equal for texts that compare equal. steps: counts what is done.
    std::vector<std::uint32_t> Ranks(const TextOrder& order, Steps& steps) const;

private:
    static constexpr std::size_t kFew = 32;

    struct Text {
        std::string_view text;
        std::size_t hash;
    };

    class Ranking;

    std::uint32_t Add(std::string_view text, std::size_t hash);
    void Widen();

    bool searches_;
    std::vector<Text> texts_;
    std::vector<std::uint32_t> slots_;  ///< by hash, open addressing: a number and one, or 0
};

}  // namespace kpTables::recordset
