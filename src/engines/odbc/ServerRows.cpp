#include "engines/odbc/ServerRows.h"

#include <algorithm>
#include <utility>

#include "engines/common/BookTexts.h"
#include "engines/odbc/RowReader.h"
#include "kpTables/Convert.h"

namespace kpTables::engines::odbc {

namespace {

/// The writer's columns, followed by the flag.
recordset::FieldsPtr FieldsWithFlag(const TableWriter& writer) {
    std::vector<FieldInfo> fields;
    for (const ServerColumn& column : writer.Columns())
        fields.push_back({column.description.name, FieldTypeOf(column.description)});
    fields.push_back({"", VarType::Boolean});
    return recordset::ShareFields(std::move(fields));
}

}  // namespace

ServerRows::ServerRows(OpenConnectionPtr connection, EditableQuery source)
    : connection_(std::move(connection)),
      source_(std::move(source)),
      fields_(FieldsWithFlag(*source_.writer)),
      columns_(static_cast<int>(fields_->size()) - 1) {}

const Variant& ServerRows::DefaultOf(int column) const {
    return source_.writer->Columns()[static_cast<std::size_t>(column)].defaultValue;
}

std::string ServerRows::IdentityOf(const std::function<Variant(int column)>& value) const {
    std::string identity;
    for (const int column : source_.writer->Identity()) {
        const Variant cell = value(column);
        identity += cell.IsNull() ? std::string("\1") : Text(cell);
        identity += '\0';
    }
    return identity;
}

std::string ServerRows::IdentityOf(const recordset::RowStore& rows, std::size_t row) const {
    return IdentityOf([&](int column) { return rows.GetValue(row, column); });
}

std::string ServerRows::IdentityOf(const MemoryRecordset& row) const {
    return IdentityOf([&](int column) { return row.GetValue(column); });
}

std::unique_ptr<recordset::RowStore> ServerRows::ReadAll() {
    if (!std::exchange(source_.hasRun, false)) source_.query->Execute({}, source_.text);
    auto all = ReadRows(*source_.query, connection_->session, *fields_, connection_->limits, source_.text);
    source_.query->CloseCursor();
    return all;
}

std::int64_t ServerRows::CountOthers() {
    if (IsWholeTable()) return source_.writer->CountRows() - static_cast<std::int64_t>(added_.size());
    const auto all = ReadAll();
    std::int64_t others = 0;
    for (std::size_t row = 0; row < all->Rows(); ++row)
        others += std::ranges::find(added_, IdentityOf(*all, row)) == added_.end() ? 1 : 0;
    return others;
}

std::unique_ptr<MemoryRecordset> ServerRows::Read(MemoryRecordset& /*added*/) {
    auto all = ReadAll();
    if (!added_.empty()) all = WithAddedBehind(*all);
    auto rows = std::make_unique<MemoryRecordset>(std::move(all), true, &engines::kBookTexts);
    read_ = true;
    added_ = {};
    return rows;
}

/// The server's own values count: it may have rounded those that were added.
std::unique_ptr<recordset::RowStore> ServerRows::WithAddedBehind(const recordset::RowStore& all) const {
    auto ordered = std::make_unique<recordset::RowStore>(fields_);
    const auto append = [&](std::size_t row, bool isOwn) {
        ordered->BeginRow();
        for (int column = 0; column < columns_; ++column) ordered->PutValue(column, all.GetValue(row, column));
        if (isOwn) ordered->PutBoolean(columns_, true);
    };
    // Of each that was added, its row; of several rows with its values, the first.
    std::vector<std::size_t> own(added_.size(), all.Rows());
    for (std::size_t row = 0; row < all.Rows(); ++row) {
        const std::string identity = IdentityOf(all, row);
        std::size_t number = 0;
        while (number < own.size() && (added_[number] != identity || own[number] < all.Rows())) ++number;
        if (number < own.size()) {
            own[number] = row;
        } else {
            append(row, false);
        }
    }
    for (const std::size_t row : own) {
        if (row < all.Rows()) append(row, true);
    }
    return ordered;
}

void ServerRows::BeginChange(const MemoryRecordset& row) {
    before_.clear();
    for (int column = 0; column < columns_; ++column) before_.push_back(row.GetValue(column));
}

void ServerRows::Insert(const ColumnSet& set, WrittenValues values, MemoryRecordset& row) {
    const auto counter = source_.writer->Insert(set, values);
    row.SetValue(columns_, true);
    if (const auto column = source_.writer->CounterColumn(); column && counter) row.SetValue(*column, *counter);
    if (!read_) added_.push_back(IdentityOf(row));
}

void ServerRows::Change(const ColumnSet& set, WrittenValues values, MemoryRecordset& row) {
    const bool isOwn = row.GetValue(columns_).Is(true);
    source_.writer->Change(set, values, before_, isOwn);
    row.SetValue(columns_, true);
    if (!read_) added_.back() = IdentityOf(row);
}

}  // namespace kpTables::engines::odbc
