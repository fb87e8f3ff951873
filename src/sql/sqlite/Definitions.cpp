#include "sql/sqlite/Definitions.h"

#include <algorithm>
#include <vector>

#include "sql/SqlError.h"
#include "sql/sqlite/DeclaredType.h"
#include "sql/sqlite/DefaultValue.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/SqliteTranslator.h"

namespace kpTables::sql {

namespace {

using Keys = std::vector<std::string>;

bool Contains(const Keys& keys, const std::string& name) {
    return std::any_of(keys.begin(), keys.end(), [&](const auto& key) { return SameName(key, name); });
}

std::string QuotedList(const Keys& names) {
    std::string list;
    for (const auto& name : names) list.append(list.empty() ? "(" : ", ").append(QuoteForSqlite(name));
    return list + ")";
}

Keys PrimaryKeyOf(const CreateTableStatement& statement) {
    Keys keys = statement.primaryKey;
    for (const auto& column : statement.columns) {
        if (!column.primaryKey) continue;
        if (!keys.empty())
            throw SqlError(ErrorKind::Syntax, "the table '" + statement.table + "' has two primary keys",
                           column.offset);
        keys.push_back(column.name);
    }
    return keys;
}

/// A computed column is another name for a stored one of its type.
void CheckComputed(const ColumnDefinition& column, const std::string& source, Type type, bool stored) {
    if (!stored)
        throw SqlError(ErrorKind::Unsupported, "the column '" + source + "' is computed itself", column.offset);
    if (column.type.type != type)
        throw SqlError(ErrorKind::TypeMismatch,
                       "the column '" + column.name + "' is not of the type of the column '" + source + "'",
                       column.offset);
}

void CheckComputed(const CreateTableStatement& statement, const Keys& keys) {
    for (const auto& column : statement.columns) {
        if (column.source.empty()) continue;
        if (Contains(keys, column.name))
            throw SqlError(ErrorKind::Unsupported, "the computed column '" + column.name + "' cannot be a key",
                           column.offset);
        const auto source = std::find_if(statement.columns.begin(), statement.columns.end(),
                                         [&](const auto& other) { return SameName(other.name, column.source); });
        if (source == statement.columns.end())
            throw SqlError(ErrorKind::UnknownColumn, "unknown column '" + column.source + "'", column.offset);
        CheckComputed(column, source->name, source->type.type, source->source.empty());
    }
}

void CheckColumns(const CreateTableStatement& statement) {
    Keys seen;
    for (const auto& column : statement.columns) {
        if (Contains(seen, column.name))
            throw SqlError(ErrorKind::Syntax, "the column '" + column.name + "' is defined twice", column.offset);
        seen.push_back(column.name);
    }
    const auto check = [&](const Keys& keys) {
        for (const auto& key : keys)
            if (!Contains(seen, key))
                throw SqlError(ErrorKind::UnknownColumn, "unknown column '" + key + "' in a key", statement.offset);
    };
    check(statement.primaryKey);
    CheckComputed(statement, statement.primaryKey);
    for (const auto& keys : statement.uniqueKeys) {
        check(keys);
        CheckComputed(statement, keys);
    }
}

bool HoldsRowId(const ColumnDefinition& column, bool soleKey) {
    return column.type.counter || (soleKey && column.type.type == Type::Long);
}

std::string ColumnText(Session& session, const ColumnDefinition& column, bool soleKey, bool notNull) {
    std::string text = QuoteForSqlite(column.name) + " " + DeclaredType(column.type, soleKey);
    if (!column.source.empty()) return text + " AS (" + QuoteForSqlite(column.source) + ")";
    if (notNull && !HoldsRowId(column, soleKey)) text += " NOT NULL";
    if (column.unique && !HoldsRowId(column, soleKey)) text += " UNIQUE";
    if (column.defaultValue)
        text += " DEFAULT " + DefaultText(session, *column.defaultValue, column.type.type);
    else if (column.type.type == Type::Boolean)
        text += " DEFAULT 0";  // Jet's flags are never Null in a new row
    return text;
}

}  // namespace

std::string TranslateCreateTable(Session& session, const CreateTableStatement& statement) {
    if (session.Tables().Find(statement.table))
        throw SqlError(ErrorKind::Syntax, "table '" + statement.table + "' already exists", statement.offset);
    CheckColumns(statement);
    const Keys primary = PrimaryKeyOf(statement);
    std::string text = "CREATE TABLE " + QuoteForSqlite(statement.table);
    bool rowId = false;
    for (const auto& column : statement.columns) {
        const bool key = Contains(primary, column.name);
        const bool soleKey = key && primary.size() == 1;
        if (HoldsRowId(column, soleKey)) {
            if (rowId)
                throw SqlError(ErrorKind::Unsupported, "a table has one COUNTER column, and a key beside it is no LONG",
                               column.offset);
            rowId = true;
        }
        text += &column == &statement.columns.front() ? " (" : ", ";
        text += ColumnText(session, column, soleKey, column.notNull || key);
    }
    const auto holder = std::find_if(statement.columns.begin(), statement.columns.end(), [&](const auto& column) {
        return HoldsRowId(column, primary.size() == 1 && Contains(primary, column.name));
    });
    const bool declared = rowId && primary.size() == 1 && SameName(primary.front(), holder->name);
    // Where a COUNTER is the row id and so SQLite's primary key, the key that the statement names is a unique one.
    if (!primary.empty() && !declared) text += (rowId ? ", UNIQUE " : ", PRIMARY KEY ") + QuotedList(primary);
    for (const auto& keys : statement.uniqueKeys) text += ", UNIQUE " + QuotedList(keys);
    return text + ")";
}

std::string TranslateCreateIndex(Session& session, const CreateIndexStatement& statement) {
    const CatalogTable& table = session.Table(statement.table, statement.offset);
    std::string text = statement.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    text += QuoteForSqlite(IndexName(table.name, statement.index)) + " ON " + QuoteForSqlite(table.name);
    std::string separator = " (";
    for (const auto& key : statement.keys) {
        const CatalogColumn& column = RequireColumn(table, key.column, statement.offset);
        text.append(separator).append(QuoteForSqlite(column.name)).append(key.descending ? " DESC" : "");
        separator = ", ";
    }
    return text + ")";
}

std::string TranslateDropTable(Session& session, const DropTableStatement& statement) {
    return "DROP TABLE " + QuoteForSqlite(session.Table(statement.table, statement.offset).name);
}

std::string TranslateDropIndex(Session& session, const DropIndexStatement& statement) {
    const CatalogTable& table = session.Table(statement.table, statement.offset);
    return "DROP INDEX " + QuoteForSqlite(IndexName(table.name, statement.index));
}

std::string TranslateAddColumn(Session& session, const AddColumnStatement& statement) {
    const CatalogTable& table = session.Table(statement.table, statement.offset);
    const ColumnDefinition& column = statement.column;
    if (FindColumn(table, column.name))
        throw SqlError(ErrorKind::Syntax, "the column '" + column.name + "' exists already", column.offset);
    if (column.primaryKey || column.unique || column.type.counter)
        throw SqlError(ErrorKind::Unsupported, "a key or a COUNTER cannot be added to a table that exists",
                       column.offset);
    if (!column.source.empty()) {
        const CatalogColumn& source = RequireColumn(table, column.source, column.offset);
        CheckComputed(column, source.name, source.type, !source.computed);
    }
    return "ALTER TABLE " + QuoteForSqlite(table.name) + " ADD COLUMN " +
           ColumnText(session, column, false, column.notNull);
}

}  // namespace kpTables::sql
