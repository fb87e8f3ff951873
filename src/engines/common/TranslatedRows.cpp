#include "engines/common/TranslatedRows.h"

#include <algorithm>
#include <utility>

#include "engines/common/Failure.h"

namespace kpTables::engines {

TranslatedRows::TranslatedRows(ExecutorPtr executor, BoundQuery query)
    : executor_(std::move(executor)), query_(std::move(query)), columns_(CountColumns()) {}

int TranslatedRows::CountColumns() const noexcept {
    return static_cast<int>(Fields()->size()) - query_.statement->hidden;
}

const Variant& TranslatedRows::DefaultOf(int column) const {
    return Writer().Table().columns[static_cast<std::size_t>(column)].defaultValue;
}

std::int64_t TranslatedRows::CountOthers() {
    if (IsWholeTable()) return Writer().CountRows() - static_cast<std::int64_t>(added_.size());
    return static_cast<std::int64_t>(executor_->CountEditable(query_, added_));
}

std::unique_ptr<MemoryRecordset> TranslatedRows::Read(MemoryRecordset& added) {
    Writer().BeforeRead();
    auto all = executor_->ReadEditable(query_);
    const std::int64_t moment = Writer().Moment();
    if (!added_.empty()) {
        if (CountColumns() != columns_) RaiseColumnsChanged(query_.text);
        all = WithAddedBehind(*all, added);
    }
    auto rows = std::make_unique<MemoryRecordset>(std::move(all), true, &executor_->GetDriver().Texts());
    columns_ = CountColumns();
    read_ = true;
    moment_ = moment;
    added_ = {};
    return rows;
}

std::unique_ptr<recordset::RowStore> TranslatedRows::WithAddedBehind(const recordset::RowStore& all,
                                                                     MemoryRecordset& added) const {
    auto ordered = std::make_unique<recordset::RowStore>(Fields());
    std::vector<std::int64_t> ids = added_;
    std::ranges::sort(ids);
    for (std::size_t row = 0; row < all.Rows(); ++row) {
        const std::int64_t id = all.GetValue(row, columns_).If<Currency>()->Scaled();
        if (std::ranges::binary_search(ids, id)) continue;
        ordered->BeginRow();
        for (int column = 0; column < all.Columns(); ++column) ordered->PutValue(column, all.GetValue(row, column));
    }
    for (added.MoveFirst(); !added.Eof(); added.MoveNext()) {
        ordered->BeginRow();
        for (int column = 0; column < all.Columns(); ++column) ordered->PutValue(column, added.GetValue(column));
    }
    return ordered;
}

RowKey TranslatedRows::KeyOf(const MemoryRecordset& row) const {
    const Variant version = HasVersions() ? row.GetValue(columns_ + 1) : Variant();
    const auto* number = version.If<Currency>();
    return {row.GetValue(columns_).If<Currency>()->Scaled(), number ? number->Scaled() : 0, moment_};
}

void TranslatedRows::KeepVersion(MemoryRecordset& row) const {
    if (HasVersions()) row.SetValue(columns_ + 1, Currency::FromScaled(Writer().LastVersion()));
}

void TranslatedRows::Insert(const ColumnSet& set, WrittenValues values, MemoryRecordset& row) {
    // After the row is in the table, nothing may fail for want of memory: a second attempt would add it twice.
    if (added_.size() == added_.capacity()) added_.reserve(2 * added_.size() + 1);
    const std::int64_t id = Writer().Insert(set, values);
    if (!read_) added_.push_back(id);
    row.SetValue(columns_, Currency::FromScaled(id));
    KeepVersion(row);
    if (const auto column = Writer().Table().rowIdColumn) row.SetValue(*column, static_cast<double>(id));
}

void TranslatedRows::Change(const ColumnSet& set, WrittenValues values, MemoryRecordset& row) {
    Writer().Change(KeyOf(row), set, values);
    KeepVersion(row);
    const auto key = Writer().Table().rowIdColumn;
    if (!key || !set.Has(*key)) return;
    const Variant id = row.GetValue(*key);
    const auto* whole = id.If<std::int32_t>();
    if (!whole) return;
    row.SetValue(columns_, Currency::FromScaled(*whole));
    if (!read_) added_.back() = *whole;
}

}  // namespace kpTables::engines
