// What CREATE and ALTER say of columns and keys.
#include "sql/Names.h"
#include "sql/print/sqlite/DeclaredType.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::sql::print::sqlite {

std::string ColumnText(const bind::Definition& definition, const std::string& defaultText) {
    const ColumnDefinition& column = *definition.column;
    std::string text = QuotedName(column.name) + " " + DeclaredType(column.type, definition.isSoleKey);
    if (!column.source.empty()) return text + " AS (" + QuotedName(column.source) + ")";
    const bool holdsRowId = definition.HoldsRowId();
    if (definition.notNull && !holdsRowId) text += " NOT NULL";
    if (column.unique && !holdsRowId) text += " UNIQUE";
    if (!defaultText.empty()) text += " DEFAULT " + defaultText;
    return text;
}

std::string KeyText(const bind::SchemaChange& change) {
    const bind::Definition* const holder = RowIdHolder(change);
    const auto& primary = change.primaryKey;
    const bool declared = holder && primary.size() == 1 && SameName(primary.front(), holder->column->name);
    if (primary.empty() || declared) return {};
    // Where a COUNTER is the row id and so SQLite's primary key, the statement's key becomes a unique one.
    return (holder ? ", UNIQUE " : ", PRIMARY KEY ") + SqliteEngine().NameList(primary);
}

}  // namespace kpTables::sql::print::sqlite
