#include "recordset/RowOrder.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <span>
#include <tuple>
#include <utility>

#include "recordset/Steps.h"
#include "recordset/TextRanks.h"

namespace kpTables::recordset {

namespace {

constexpr std::uint64_t kSign = std::uint64_t{1} << 63;

/// Bits that compare like the numbers.
std::uint64_t OrderedBits(double number) noexcept {
    const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
    return bits & kSign ? ~bits : bits | kSign;
}

/// Before day 0 a serial's time of day goes on from its day downwards.
double MomentOf(double serial) noexcept { return serial < 0 ? 2 * std::trunc(serial) - serial : serial; }

std::uint64_t OrderedNumber(const RowStore& rows, std::size_t row, int column) {
    const VarType type = rows.TypeAt(row, column);
    const double number = rows.NumberAt(row, column);
    if (type == VarType::Date) return OrderedBits(MomentOf(number));
    if (rows.Fields()[static_cast<std::size_t>(column)].type != VarType::Currency) return OrderedBits(number);
    // Amounts are exact beyond the digits of a double.
    if (type == VarType::Currency)
        return static_cast<std::uint64_t>(rows.GetValue(row, column).If<Currency>()->Scaled()) ^ kSign;
    constexpr double kLimit = 9.2e18;
    const double scaled = std::clamp(number * Currency::kScale, -kLimit, kLimit);
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(scaled)) ^ kSign;
}

/// A row with its cell of one column, so that comparisons do not access the store.
struct Entry {
    std::uint64_t bits;  ///< compare like the values of one kind
    std::uint32_t row;
    std::uint32_t kind;  ///< in ascending order: Null, numbers, texts

    friend bool operator<(const Entry& left, const Entry& right) noexcept {
        return std::tie(left.kind, left.bits, left.row) < std::tie(right.kind, right.bits, right.row);
    }
    bool IsSameAs(const Entry& other) const noexcept { return kind == other.kind && bits == other.bits; }
};

constexpr std::uint32_t kNull = 0;
constexpr std::uint32_t kNumber = 1;
constexpr std::uint32_t kText = 2;

/// Sorts by one key, and then what is equal by the next one.
class RowSorter {
public:
    RowSorter(const RowStore& rows, const std::vector<SortKey>& keys, const TextOrder& texts,
              std::function<void()> pause)
        : rows_(rows), keys_(keys), texts_(texts), steps_(std::move(pause)), entries_(rows.Rows()) {
        for (std::uint32_t row = 0; row < entries_.size(); ++row) entries_[row].row = row;
    }

    std::vector<std::uint32_t> Sorted() {
        Sort(entries_, 0);
        std::vector<std::uint32_t> order(entries_.size());
        std::ranges::transform(entries_, order.begin(), &Entry::row);
        return order;
    }

private:
    using Run = std::span<Entry>;

    void Sort(Run run, std::size_t key) {
        if (run.size() < 2 || key == keys_.size()) return;
        Read(run, keys_[key].column);
        if (keys_[key].descending) Reverse(run);
        if (!std::is_sorted(run.begin(), run.end())) std::sort(run.begin(), run.end());
        for (std::size_t first = 0, end = 1; first < run.size(); first = end++) {
            while (end < run.size() && run[end].IsSameAs(run[first])) ++end;
            Sort(run.subspan(first, end - first), key + 1);
        }
    }

    void Read(Run run, int column) {
        TextRanks ranks(run.size());
        for (Entry& entry : run) {
            steps_.Count();
            const VarType type = rows_.TypeAt(entry.row, column);
            entry.kind = type == VarType::Null ? kNull : type == VarType::String ? kText : kNumber;
            entry.bits = entry.kind == kText     ? ranks.NumberOf(rows_.TextAt(entry.row, column))
                         : entry.kind == kNumber ? OrderedNumber(rows_, entry.row, column)
                                                 : 0;
        }
        const std::vector<std::uint32_t> rankOf = ranks.Ranks(texts_, steps_);
        if (rankOf.empty()) return;
        for (Entry& entry : run) {
            if (entry.kind == kText) entry.bits = rankOf[entry.bits];
        }
    }

    static void Reverse(Run run) noexcept {
        for (Entry& entry : run) {
            entry.kind = kText - entry.kind;
            entry.bits = ~entry.bits;
        }
    }

    const RowStore& rows_;
    const std::vector<SortKey>& keys_;
    const TextOrder& texts_;
    Steps steps_;
    std::vector<Entry> entries_;
};

}  // namespace

std::vector<std::uint32_t> OrderRows(const RowStore& rows, const std::vector<SortKey>& keys, const TextOrder& texts,
                                     std::function<void()> pause) {
    return RowSorter(rows, keys, texts, std::move(pause)).Sorted();
}

}  // namespace kpTables::recordset
