#include "recordset/RowOrder.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <numeric>

namespace kpTables::recordset {

namespace {

/// Bits that compare like the numbers.
std::uint64_t OrderedBits(double number) noexcept {
    constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
    const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
    return bits & kSign ? ~bits : bits | kSign;
}

/// A row with its cell of one column, so that comparisons do not access the store.
struct Entry {
    Entry(const RowStore& rows, std::uint32_t number, int column) : row(number) {
        const VarType type = rows.TypeAt(number, column);
        if (type == VarType::String) {
            rank = 2;
            text = rows.TextAt(number, column);
        } else if (type != VarType::Null) {
            rank = 1;
            bits = OrderedBits(rows.NumberAt(number, column));
        }
    }

    std::uint64_t bits = 0;
    std::string_view text;
    std::uint32_t row;
    std::int32_t rank = 0;
};

bool IsLess(const Entry& left, const Entry& right, const TextOrder& texts) noexcept {
    if (left.rank != right.rank) return left.rank < right.rank;
    if (left.bits != right.bits) return left.bits < right.bits;
    // Adjacent rows often share one copy of a text.
    return left.text.data() != right.text.data() && texts.compare(left.text, right.text) < 0;
}

}  // namespace

std::vector<std::uint32_t> OrderRows(const RowStore& rows, const std::vector<SortKey>& keys, const TextOrder& texts) {
    std::vector<std::uint32_t> order(rows.Rows());
    std::iota(order.begin(), order.end(), 0u);
    std::vector<Entry> entries;
    entries.reserve(order.size());
    // Each stable sort keeps the order of the later keys.
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        entries.clear();
        for (std::uint32_t row : order) entries.emplace_back(rows, row, key->column);
        if (key->descending) {
            std::stable_sort(entries.begin(), entries.end(),
                             [&](const Entry& left, const Entry& right) { return IsLess(right, left, texts); });
        } else {
            std::stable_sort(entries.begin(), entries.end(),
                             [&](const Entry& left, const Entry& right) { return IsLess(left, right, texts); });
        }
        std::transform(entries.begin(), entries.end(), order.begin(), [](const Entry& entry) { return entry.row; });
    }
    return order;
}

}  // namespace kpTables::recordset
