// CREATE, DROP and ALTER.
#include <algorithm>

#include "sql/Names.h"
#include "sql/print/sqlite/DeclaredType.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::sql::print::sqlite {

namespace {

using bind::Definition;

std::string QuotedList(const std::vector<std::string>& names) {
    std::string list;
    for (const auto& name : names) list.append(list.empty() ? "(" : ", ").append(QuotedName(name));
    return list + ")";
}

std::string CreateTable(const CreateTableStatement& statement, const bind::SchemaChange& change,
                        const std::vector<std::string>& defaults) {
    std::string text = "CREATE TABLE " + QuotedName(statement.table);
    for (std::size_t i = 0; i < change.columns.size(); ++i)
        text += (i == 0 ? " (" : ", ") + ColumnText(change.columns[i], defaults[i]);
    const auto holder = std::find_if(change.columns.begin(), change.columns.end(),
                                     [](const Definition& column) { return column.HoldsRowId(); });
    const bool rowId = holder != change.columns.end();
    const auto& primary = change.primaryKey;
    const bool declared = rowId && primary.size() == 1 && SameName(primary.front(), holder->column->name);
    // Where a COUNTER is the row id and so SQLite's primary key, the statement's key becomes a unique one.
    if (!primary.empty() && !declared) text += (rowId ? ", UNIQUE " : ", PRIMARY KEY ") + QuotedList(primary);
    for (const auto& keys : statement.uniqueKeys) text += ", UNIQUE " + QuotedList(keys);
    return text + ")";
}

std::string CreateIndex(const CreateIndexStatement& statement, const bind::SchemaChange& change) {
    const std::string& table = change.table->name;
    std::string text = statement.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    text += QuotedName(IndexName(table, statement.index)) + " ON " + QuotedName(table);
    for (std::size_t i = 0; i < change.keys.size(); ++i) {
        text += (i == 0 ? " (" : ", ") + QuotedName(change.keys[i]->name);
        if (statement.keys[i].descending) text += " DESC";
    }
    return text + ")";
}

}  // namespace

std::string ColumnText(const Definition& definition, const std::string& defaultText) {
    const ColumnDefinition& column = *definition.column;
    std::string text = QuotedName(column.name) + " " + DeclaredType(column.type, definition.isSoleKey);
    if (!column.source.empty()) return text + " AS (" + QuotedName(column.source) + ")";
    const bool holdsRowId = definition.HoldsRowId();
    if (definition.notNull && !holdsRowId) text += " NOT NULL";
    if (column.unique && !holdsRowId) text += " UNIQUE";
    if (!defaultText.empty()) text += " DEFAULT " + defaultText;
    return text;
}

std::string SchemaChangeText(const bind::SchemaChange& change, const std::vector<std::string>& defaults) {
    const Statement& statement = *change.statement;
    switch (statement.kind) {
        case StatementKind::CreateTable:
            return CreateTable(static_cast<const CreateTableStatement&>(statement), change, defaults);
        case StatementKind::CreateIndex:
            return CreateIndex(static_cast<const CreateIndexStatement&>(statement), change);
        case StatementKind::DropTable:
            if (!change.table)
                return "DROP TABLE IF EXISTS " + QuotedName(static_cast<const DropTableStatement&>(statement).table);
            return "DROP TABLE " + QuotedName(change.table->name);
        case StatementKind::DropIndex:
            return "DROP INDEX " +
                   QuotedName(IndexName(change.table->name, static_cast<const DropIndexStatement&>(statement).index));
        case StatementKind::DropColumn:
            return "ALTER TABLE " + QuotedName(change.table->name) + " DROP COLUMN " +
                   QuotedName(change.keys.front()->name);
        default:
            return "ALTER TABLE " + QuotedName(change.table->name) + " ADD COLUMN " +
                   ColumnText(change.columns.front(), defaults.front());
    }
}

}  // namespace kpTables::sql::print::sqlite
