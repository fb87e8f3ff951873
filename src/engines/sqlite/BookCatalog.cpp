#include "BookCatalog.h"

#include <sqlite3.h>

#include <algorithm>

#include "RowReader.h"
#include "sql/print/sqlite/DeclaredType.h"
#include "sql/Names.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::sqlite {

namespace {

// The engine's own tables begin with kp_.
constexpr std::string_view kTables =
    "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
    "AND name NOT LIKE 'kp\\_%' ESCAPE '\\'";

/// A row for each column of a table. The table-valued form of the pragma takes four times as long, because SQLite first
/// makes a virtual table of it.
PreparedStatement PrepareColumns(const Database& database, std::string_view table) {
    return database.Prepare("PRAGMA table_xinfo(" + sql::print::sqlite::QuotedText(table) + ")");
}
enum ColumnsOfColumns { kName = 1, kType, kNotNull, kDefault, kKey, kHidden };

bool IsAutoincrement(const Database& database, const std::string& table, const std::string& column) {
    int autoincrement = 0;
    const int code = sqlite3_table_column_metadata(database.Get(), "main", table.c_str(), column.c_str(), nullptr,
                                                   nullptr, nullptr, nullptr, &autoincrement);
    return code == SQLITE_OK && autoincrement != 0;
}

/// The column whose second name a computed one is, from the text that made the table; "" when it is none.
std::string SourceOf(const Database& database, std::string_view table, std::string_view column) {
    PreparedStatement find = database.Prepare("SELECT sql FROM sqlite_schema WHERE type = 'table' AND name = ?1");
    find.BindText(1, table);
    if (!find.Step()) return {};
    const std::string_view text = find.Text(0);
    constexpr std::string_view kBefore = " AS (\"";
    constexpr std::string_view kBehind = "\")";
    const auto defined = text.find(sql::print::sqlite::QuotedName(column) + " ");
    const auto as = text.find(kBefore, defined);
    if (as == text.npos) return {};
    const std::string_view source = text.substr(as + kBefore.size());
    const auto end = source.find('"');
    return source.substr(std::min(end, source.size())).starts_with(kBehind) ? std::string(source.substr(0, end)) : "";
}

/// The value of a declared default, which is an expression of SQLite's.
Variant DefaultValue(const Database& database, const std::string& expression, VarType type) {
    PreparedStatement statement = database.Prepare("SELECT " + expression);
    const auto rows = ReadRows(statement, db::ShareFields({{"", type}}), statement.Text());
    return rows->GetValue(0, 0);
}

}  // namespace

VarType FieldType(sql::Type type) noexcept {
    switch (type) {
        case sql::Type::Boolean:
            return VarType::Boolean;
        case sql::Type::Short:
            return VarType::Integer;
        case sql::Type::Long:
            return VarType::Long;
        case sql::Type::Double:
            return VarType::Double;
        case sql::Type::Currency:
            return VarType::Currency;
        case sql::Type::Date:
            return VarType::Date;
        case sql::Type::Text:
            return VarType::String;
        case sql::Type::Unknown:
        case sql::Type::Null:
            break;
    }
    return VarType::Empty;
}

const sql::CatalogTable* BookCatalog::Find(std::string_view name) const {
    for (const sql::CatalogTable& table : known_) {
        if (sql::SameName(table.name, name)) return &table;
    }
    PreparedStatement find = database_.Prepare(std::string(kTables) + " AND name = ?1 COLLATE NOCASE");
    find.BindText(1, name);
    if (!find.Step()) return nullptr;
    sql::CatalogTable table{std::string(find.Text(0)), {}};
    PreparedStatement columns = PrepareColumns(database_, table.name);
    while (columns.Step()) {
        const std::string column(columns.Text(kName));
        table.columns.push_back(
            sql::print::sqlite::ColumnOfDeclaredType(column, columns.Text(kType), IsAutoincrement(database_, table.name, column)));
        table.columns.back().computed = columns.Integer(kHidden) != 0;
        if (table.columns.back().computed) table.columns.back().source = SourceOf(database_, table.name, column);
    }
    known_.push_back(std::move(table));
    return &known_.back();
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
        TableInfo::Column column{known.name, FieldType(known.type), Variant::Null(), false, known.counter};
        if (!columns.IsNull(kDefault)) {
            column.defaultValue = DefaultValue(database_, std::string(columns.Text(kDefault)), column.type);
        }
        const bool key = columns.Integer(kKey) > 0 || columns.Integer(kNotNull) != 0;
        column.required = key && !known.counter && column.defaultValue.IsNull();
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

std::vector<std::string> BookCatalog::TableNames() const {
    std::vector<std::string> names;
    PreparedStatement tables = database_.Prepare(std::string(kTables) + " ORDER BY rowid");
    while (tables.Step()) names.emplace_back(tables.Text(0));
    return names;
}

bool BookCatalog::Refresh() {
    if (!readVersion_) readVersion_ = database_.Prepare("PRAGMA schema_version");
    const ResetAtEnd reset(readVersion_);
    const std::int64_t version = readVersion_.Step() ? readVersion_.Integer(0) : 0;
    if (version == version_) return false;
    version_ = version;
    known_.clear();
    return true;
}

}  // namespace kpTables::sqlite
