#include "engines/postgres/RowBatch.h"

#include <algorithm>

namespace kpTables::engines::postgres {

namespace {

constexpr std::size_t kMostRows = 1000;
constexpr std::size_t kMostBytes = std::size_t{4} << 20;

std::size_t BytesOf(const RowBatch::Group& group) noexcept {
    std::size_t bytes = 0;
    for (const BinaryArray& array : group.arrays) bytes += array.Bytes();
    return bytes;
}

}  // namespace

bool RowBatch::IsFull() const noexcept { return rows_.size() >= kMostRows || bytes_ >= kMostBytes; }

RowBatch::Group& RowBatch::GroupOf(const engines::ColumnSet& set) {
    const auto found = std::ranges::find_if(groups_, [&](const Group& group) { return group.set == set; });
    if (found != groups_.end()) return *found;
    Group group{set, {}, 0};
    if (kind_ != Kind::Insert) group.arrays.emplace_back(kInteger8);
    if (kind_ == Kind::ChangeVersion) group.arrays.emplace_back(kTransaction);
    for (std::size_t i = 0; i < columns_->size(); ++i) {
        if (set.Has(static_cast<int>(i))) group.arrays.emplace_back((*columns_)[i]);
    }
    return groups_.emplace_back(std::move(group));
}

void RowBatch::Add(const engines::RowKey& row, const engines::ColumnSet& set, engines::WrittenValues values) {
    Group& group = GroupOf(set);
    const std::size_t held = BytesOf(group);
    try {
        auto array = group.arrays.begin();
        if (kind_ != Kind::Insert) (array++)->AddWhole(row.id);
        if (kind_ == Kind::ChangeVersion) (array++)->AddWhole(row.version);
        for (const Variant* value : values) (array++)->Add(*value);
        if (kind_ != Kind::Insert) ids_.insert(row.id);
        rows_.push_back({static_cast<std::size_t>(&group - groups_.data()), group.rows});
    } catch (...) {
        for (BinaryArray& each : group.arrays) each.Cut(group.rows);
        throw;
    }
    ++group.rows;
    bytes_ += BytesOf(group) - held;
}

Parameters RowBatch::ParametersOf(const Group& group, std::size_t first, std::size_t count) {
    Parameters parameters;
    int number = 0;
    for (const BinaryArray& array : group.arrays) parameters.BindBytes(++number, array.Slice(first, count));
    return parameters;
}

}  // namespace kpTables::engines::postgres
