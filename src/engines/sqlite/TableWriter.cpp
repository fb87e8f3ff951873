#include "engines/sqlite/TableWriter.h"

#include <utility>

#include "engines/common/Failure.h"
#include "engines/common/ValueSink.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::engines::sqlite {

using engines::ColumnSet;
using engines::WrittenTable;
using engines::WrittenValues;

namespace {

int BindAll(PreparedStatement& statement, WrittenValues values) {
    int parameter = 0;
    for (const Variant* value : values) engines::BindValue(statement, ++parameter, *value);
    return parameter;
}

}  // namespace

TableWriter::TableWriter(const Database& database, WrittenTable table)
    : RowWriter(std::move(table)), database_(database), quotedName_(sql::print::sqlite::QuotedName(Table().name)) {}

std::int64_t TableWriter::CountRows() {
    if (!count_) count_ = database_.Prepare("SELECT COUNT(*) FROM " + quotedName_);
    const ResetAtEnd reset(count_);
    return count_.Step() ? count_.Integer(0) : 0;
}

std::int64_t TableWriter::InsertRow(const ColumnSet& set, WrittenValues values) {
    PreparedStatement& insert = StatementFor(inserts_, set, &TableWriter::InsertText);
    const ResetAtEnd reset(insert);
    BindAll(insert, values);
    insert.CountStepsAnew();
    insert.Step();
    return database_.LastInsertRow();
}

void TableWriter::ChangeRow(const engines::RowKey& row, const ColumnSet& set, WrittenValues values) {
    PreparedStatement& update = StatementFor(updates_, set, &TableWriter::UpdateText);
    const ResetAtEnd reset(update);
    const int bound = BindAll(update, values);
    update.BindInteger(bound + 1, row.id);
    update.CountStepsAnew();
    update.Step();
    if (database_.Changes() == 0) engines::RaiseRowGone(update.Text());
}

void TableWriter::DeleteRow(std::int64_t rowId) {
    PreparedStatement remove = database_.Prepare("DELETE FROM " + quotedName_ + " WHERE rowid = ?1");
    remove.BindInteger(1, rowId);
    remove.Run();
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
    if (set.Empty()) return "INSERT INTO " + quotedName_ + " DEFAULT VALUES";
    const std::vector<WrittenTable::Column>& columns = Table().columns;
    std::string names;
    std::string values;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        if (!names.empty()) {
            names += ", ";
            values += ", ";
        }
        names += sql::print::sqlite::QuotedName(columns[i].name);
        values += '?';
    }
    return "INSERT INTO " + quotedName_ + " (" + names + ") VALUES (" + values + ")";
}

std::string TableWriter::UpdateText(const ColumnSet& set) const {
    const std::vector<WrittenTable::Column>& columns = Table().columns;
    std::string text;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        text += (text.empty() ? "" : ", ") + sql::print::sqlite::QuotedName(columns[i].name) + " = ?";
    }
    return "UPDATE " + quotedName_ + " SET " + text + " WHERE rowid = ?";
}

}  // namespace kpTables::engines::sqlite
