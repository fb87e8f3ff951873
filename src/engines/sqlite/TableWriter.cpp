#include "TableWriter.h"

#include <utility>

#include "functions/TextLength.h"
#include "kpTables/Error.h"
#include "sql/sqlite/SqliteTranslator.h"

namespace kpTables::sqlite {

namespace {

void Bind(PreparedStatement& statement, int parameter, const Variant& value) {
    if (const auto* text = value.If<std::string>()) return statement.BindText(parameter, *text);
    if (const auto* number = value.If<double>()) return statement.BindReal(parameter, *number);
    if (const auto* money = value.If<Currency>()) return statement.BindInteger(parameter, money->Scaled());
    if (const auto* whole = value.If<std::int32_t>()) return statement.BindInteger(parameter, *whole);
    if (const auto* whole = value.If<std::int16_t>()) return statement.BindInteger(parameter, *whole);
    if (const auto* flag = value.If<bool>()) return statement.BindInteger(parameter, *flag ? -1 : 0);
    if (const auto* date = value.If<Date>()) return statement.BindTextCopy(parameter, date->ToIso());
    statement.BindNull(parameter);
}

int BindAll(PreparedStatement& statement, std::span<const Variant* const> values) {
    int parameter = 0;
    for (const Variant* value : values) Bind(statement, ++parameter, *value);
    return parameter;
}

}  // namespace

TableWriter::TableWriter(const Database& database, std::string table, std::vector<Column> columns,
                         std::optional<int> rowIdColumn, bool wholeTable)
    : database_(database),
      table_(std::move(table)),
      columns_(std::move(columns)),
      rowIdColumn_(rowIdColumn),
      wholeTable_(wholeTable) {}

std::int64_t TableWriter::CountRows() {
    if (!count_) count_ = database_.Prepare("SELECT COUNT(*) FROM " + sql::QuoteForSqlite(table_));
    const ResetAtEnd reset(count_);
    return count_.Step() ? count_.Integer(0) : 0;
}

std::int64_t TableWriter::Insert(const ColumnSet& set, std::span<const Variant* const> values) {
    CheckLengths(set, values);
    PreparedStatement& insert = StatementFor(inserts_, set, &TableWriter::InsertText);
    const ResetAtEnd reset(insert);
    BindAll(insert, values);
    insert.Step();
    const std::int64_t rowId = database_.LastInsertRow();
    if (rowIdColumn_ && !std::in_range<std::int32_t>(rowId)) RefuseCounter(rowId);
    return rowId;
}

void TableWriter::CheckLengths(const ColumnSet& set, std::span<const Variant* const> values) const {
    auto value = values.begin();
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        const auto* text = (*value++)->If<std::string>();
        if (!text) continue;
        if (const auto complaint = functions::LengthComplaint(*text, columns_[i].length, columns_[i].name)) {
            throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Overflow), *complaint);
        }
    }
}

void TableWriter::RefuseCounter(std::int64_t rowId) {
    PreparedStatement remove = database_.Prepare("DELETE FROM " + sql::QuoteForSqlite(table_) + " WHERE rowid = ?1");
    remove.BindInteger(1, rowId);
    remove.Run();
    const std::string& column = columns_[static_cast<std::size_t>(*rowIdColumn_)].name;
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Overflow),
                        "Overflow: the counter '" + column + "' has no values left");
}

void TableWriter::Change(std::int64_t rowId, const ColumnSet& set, std::span<const Variant* const> values) {
    CheckLengths(set, values);
    PreparedStatement& update = StatementFor(updates_, set, &TableWriter::UpdateText);
    const ResetAtEnd reset(update);
    const int bound = BindAll(update, values);
    update.BindInteger(bound + 1, rowId);
    update.Step();
    if (database_.Changes() == 0) {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                            "The row cannot be found for updating: it was deleted after it had been read",
                            std::string(update.Text()));
    }
}

PreparedStatement& TableWriter::StatementFor(std::vector<Kept>& kept, const ColumnSet& set,
                                             std::string (TableWriter::*text)(const ColumnSet& set) const) {
    for (Kept& one : kept) {
        if (one.set == set) return one.statement;
    }
    kept.push_back({set, database_.Prepare((this->*text)(set))});
    return kept.back().statement;
}

std::string TableWriter::InsertText(const ColumnSet& set) const {
    if (set.Empty()) return "INSERT INTO " + sql::QuoteForSqlite(table_) + " DEFAULT VALUES";
    std::string names;
    std::string values;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        if (!names.empty()) {
            names += ", ";
            values += ", ";
        }
        names += sql::QuoteForSqlite(columns_[i].name);
        values += '?';
    }
    return "INSERT INTO " + sql::QuoteForSqlite(table_) + " (" + names + ") VALUES (" + values + ")";
}

std::string TableWriter::UpdateText(const ColumnSet& set) const {
    std::string text;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        text += (text.empty() ? "" : ", ") + sql::QuoteForSqlite(columns_[i].name) + " = ?";
    }
    return "UPDATE " + sql::QuoteForSqlite(table_) + " SET " + text + " WHERE rowid = ?";
}

}  // namespace kpTables::sqlite
