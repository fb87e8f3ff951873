#include "engines/postgres/TableWriter.h"

#include <utility>

#include "engines/common/Failure.h"
#include "engines/common/ValueSink.h"
#include "engines/postgres/BookLock.h"
#include "engines/postgres/RowReader.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

using engines::ColumnSet;
using engines::WrittenTable;
using engines::WrittenValues;

namespace {

Parameters ParametersOf(WrittenValues values) {
    Parameters parameters;
    int number = 0;
    for (const Variant* value : values) engines::BindValue(parameters, ++number, *value);
    return parameters;
}

std::int64_t RowIdOf(const Result& row) {
    const std::string_view bytes = row.Value(0, 0);
    return bytes.size() == sizeof(std::int32_t) ? WholeOf<std::int32_t>(bytes) : WholeOf<std::int64_t>(bytes);
}

}  // namespace

TableWriter::TableWriter(Database& database, WrittenTable table, std::string_view rowId)
    : RowWriter(std::move(table)),
      database_(database),
      quotedName_(sql::print::postgres::QuotedName(Table().name)),
      quotedRowId_(sql::print::postgres::QuotedName(rowId)) {}

TableWriter::~TableWriter() {
    for (Kept& kept : inserts_) database_.Forget(std::move(kept.name));
    for (Kept& kept : updates_) database_.Forget(std::move(kept.name));
}

std::int64_t TableWriter::CountRows() {
    const std::string text = "SELECT COUNT(*) FROM " + quotedName_;
    return database_.Guarded([&] { return database_.Run(text); }).Integer(0, 0);
}

std::int64_t TableWriter::InsertRow(const ColumnSet& set, WrittenValues values) {
    return Changing(database_, [&] {
        const std::string& insert = StatementFor(inserts_, set, &TableWriter::InsertText);
        return RowIdOf(database_.RunPrepared(insert, ParametersOf(values), InsertText(set)));
    });
}

void TableWriter::ChangeRow(std::int64_t rowId, const ColumnSet& set, WrittenValues values) {
    Changing(database_, [&] {
        const std::string& update = StatementFor(updates_, set, &TableWriter::UpdateText);
        Parameters parameters = ParametersOf(values);
        parameters.BindInteger(parameters.Count() + 1, rowId);
        const std::string text = UpdateText(set);
        if (database_.RunPrepared(update, parameters, text).AffectedRows() == 0) engines::RaiseRowGone(text);
    });
}

void TableWriter::DeleteRow(std::int64_t rowId) {
    const std::string text = "DELETE FROM " + quotedName_ + " WHERE " + quotedRowId_ + " = " + std::to_string(rowId);
    Changing(database_, [&] { database_.Run(text); });
}

const std::string& TableWriter::StatementFor(std::vector<Kept>& kept, const ColumnSet& set,
                                             std::string (TableWriter::*text)(const ColumnSet& set) const) {
    for (const Kept& one : kept) {
        if (one.set == set) return one.name;
    }
    const std::string written = (this->*text)(set);
    kept.push_back({set, database_.Prepare(written, written)});
    return kept.back().name;
}

std::string TableWriter::InsertText(const ColumnSet& set) const {
    const std::vector<WrittenTable::Column>& columns = Table().columns;
    std::string names;
    std::string values;
    int number = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        names += (names.empty() ? " (" : ", ") + sql::print::postgres::QuotedName(columns[i].name);
        values += (values.empty() ? "$" : ", $") + std::to_string(++number);
    }
    const std::string row = names.empty() ? " DEFAULT VALUES" : names + ") VALUES (" + values + ")";
    return "INSERT INTO " + quotedName_ + row + " RETURNING " + quotedRowId_;
}

std::string TableWriter::UpdateText(const ColumnSet& set) const {
    const std::vector<WrittenTable::Column>& columns = Table().columns;
    std::string text;
    int number = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        text += (text.empty() ? "" : ", ") + sql::print::postgres::QuotedName(columns[i].name) + " = $" +
                std::to_string(++number);
    }
    return "UPDATE " + quotedName_ + " SET " + text + " WHERE " + quotedRowId_ + " = $" + std::to_string(number + 1);
}

}  // namespace kpTables::engines::postgres
