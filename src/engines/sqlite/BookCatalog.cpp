#include "engines/sqlite/BookCatalog.h"

#include <sqlite3.h>

#include <utility>

#include "engines/sqlite/Failure.h"
#include "engines/sqlite/RowReader.h"
#include "engines/sqlite/TableDefinition.h"
#include "sql/Names.h"
#include "sql/print/sqlite/DeclaredType.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::engines::sqlite {

namespace {

// The engine's own tables begin with kp_.
constexpr std::string_view kTables =
    "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
    "AND name NOT LIKE 'kp\\_%' ESCAPE '\\'";

/// A row for each column of a table. The table-valued form of the pragma takes four times as long, because SQLite
/// builds a virtual table first.
PreparedStatement PrepareColumns(const Database& database, std::string_view table) {
    return database.Prepare("PRAGMA table_xinfo(" + sql::print::sqlite::QuotedText(table) + ")");
}
enum ColumnsOfColumns { kName = 1, kType, kNotNull, kDefault, kKey, kHidden };

bool IsAutoincrement(const Database& database, const std::string& table, const std::string& column) {
    int autoincrement = 0;
    const int code = sqlite3_table_column_metadata(database.Get(), "main", table.c_str(), column.c_str(), nullptr,
                                                   nullptr, nullptr, nullptr, &autoincrement);
    if ((code & 0xFF) == SQLITE_NOMEM) RaiseFailure(database.Get(), code, {});
    return code == SQLITE_OK && autoincrement != 0;
}

/// The columns that the computed ones that are aliases refer to.
void AddSources(const Database& database, sql::CatalogTable& table) {
    PreparedStatement find = database.Prepare("SELECT sql FROM sqlite_schema WHERE type = 'table' AND name = ?1");
    find.BindText(1, table.name);
    if (!find.Step()) return;
    for (const auto& [name, source] : SecondNames(find.Text(0))) {
        for (sql::CatalogColumn& column : table.columns) {
            if (column.computed && sql::SameName(column.name, name)) column.source = source;
        }
    }
}

/// The value of a declared default, an SQLite expression.
Variant DefaultValue(const Database& database, const std::string& expression, VarType type) {
    PreparedStatement statement = database.Prepare("SELECT " + expression);
    const auto rows = ReadRows(statement, recordset::ShareFields({{"", type}}), statement.Text());
    return rows->GetValue(0, 0);
}

}  // namespace

std::optional<sql::CatalogTable> BookCatalog::ReadTable(std::string_view name) const {
    PreparedStatement find = database_.Prepare(std::string(kTables) + " AND name = ?1 COLLATE NOCASE");
    find.BindText(1, name);
    if (!find.Step()) return std::nullopt;
    sql::CatalogTable table{std::string(find.Text(0)), {}};
    PreparedStatement columns = PrepareColumns(database_, table.name);
    bool anyComputed = false;
    while (columns.Step()) {
        const std::string column(columns.Text(kName));
        table.columns.push_back(sql::print::sqlite::ColumnOfDeclaredType(
            column, columns.Text(kType), IsAutoincrement(database_, table.name, column)));
        table.columns.back().computed = columns.Integer(kHidden) != 0;
        anyComputed = anyComputed || table.columns.back().computed;
    }
    if (anyComputed) AddSources(database_, table);
    return table;
}

TableInfo BookCatalog::Describe(std::string_view name) const {
    TableInfo info;
    const sql::CatalogTable* table = Find(name);
    if (!table) return info;
    info.name = table->name;
    PreparedStatement columns = PrepareColumns(database_, info.name);
    for (const sql::CatalogColumn& known : table->columns) {
        if (!columns.Step()) break;
        if (known.computed) continue;
        TableInfo::Column column = engines::DescriptionOf(known);
        if (!columns.IsNull(kDefault)) {
            column.defaultValue = DefaultValue(database_, std::string(columns.Text(kDefault)), column.type);
        }
        column.key = columns.Integer(kKey) > 0;
        const bool needed = column.key || columns.Integer(kNotNull) != 0;
        column.required = needed && !known.counter && column.defaultValue.IsNull();
        info.columns.push_back(std::move(column));
    }
    return info;
}

std::string BookCatalog::RowIdColumn(std::string_view table) const {
    PreparedStatement columns = PrepareColumns(database_, table);
    std::string rowId;
    int keys = 0;
    while (columns.Step()) {
        if (columns.Integer(kKey) == 0) continue;
        ++keys;
        if (sql::SameName(columns.Text(kType), "INTEGER")) rowId = columns.Text(kName);
    }
    return keys == 1 ? rowId : std::string();
}

std::string BookCatalog::RowIdName(const sql::CatalogTable& table) const {
    for (const char* name : {"rowid", "_rowid_"}) {
        if (!sql::FindColumn(table, name)) return name;
    }
    return "oid";
}

std::vector<std::string> BookCatalog::TableNames() const {
    std::vector<std::string> names;
    PreparedStatement tables = database_.Prepare(std::string(kTables) + " ORDER BY rowid");
    while (tables.Step()) names.emplace_back(tables.Text(0));
    return names;
}

std::int64_t BookCatalog::ReadVersion() {
    if (!readVersion_) readVersion_ = database_.Prepare("PRAGMA schema_version");
    const ResetAtEnd reset(readVersion_);
    return readVersion_.Step() ? readVersion_.Integer(0) : 0;
}

}  // namespace kpTables::engines::sqlite
