// CREATE and ALTER, checked against the catalog.
#include <algorithm>
#include <vector>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Scope.h"
#include "sql/bind/StatementBinder.h"
#include "sql/bind/Stored.h"

namespace kpTables::sql::bind {

namespace {

using Keys = std::vector<std::string>;

bool Contains(const Keys& keys, const std::string& name) {
    return std::any_of(keys.begin(), keys.end(), [&](const auto& key) { return SameName(key, name); });
}

Keys PrimaryKeyOf(const CreateTableStatement& statement) {
    Keys keys = statement.primaryKey;
    for (const auto& column : statement.columns) {
        if (!column.primaryKey) continue;
        if (!keys.empty())
            throw SqlError(ErrorKind::Syntax, Message("the table '{1}' has two primary keys", statement.table),
                           column.offset);
        keys.push_back(column.name);
    }
    return keys;
}

/// A computed column is another name for a stored one of its type.
void CheckComputed(const ColumnDefinition& column, const std::string& source, Type type, bool stored) {
    if (!stored)
        throw SqlError(ErrorKind::Unsupported, Message("the column '{1}' is computed itself", source), column.offset);
    if (column.type.type != type)
        throw SqlError(ErrorKind::TypeMismatch,
                       Message("the column '{1}' is not of the type of the column '{2}'", column.name, source),
                       column.offset);
}

void CheckComputed(const CreateTableStatement& statement, const Keys& keys) {
    for (const auto& column : statement.columns) {
        if (column.source.empty()) continue;
        if (Contains(keys, column.name))
            throw SqlError(ErrorKind::Unsupported, Message("the computed column '{1}' cannot be a key", column.name),
                           column.offset);
        const auto source = std::find_if(statement.columns.begin(), statement.columns.end(),
                                         [&](const auto& other) { return SameName(other.name, column.source); });
        if (source == statement.columns.end())
            throw SqlError(ErrorKind::UnknownColumn, Message("unknown column '{1}'", column.source), column.offset);
        CheckComputed(column, source->name, source->type.type, source->source.empty());
    }
}

void CheckColumns(const CreateTableStatement& statement) {
    Keys seen;
    for (const auto& column : statement.columns) {
        if (Contains(seen, column.name))
            throw SqlError(ErrorKind::Syntax, Message("the column '{1}' is defined twice", column.name), column.offset);
        seen.push_back(column.name);
    }
    const auto check = [&](const Keys& keys) {
        for (const auto& key : keys)
            if (!Contains(seen, key))
                throw SqlError(ErrorKind::UnknownColumn, Message("unknown column '{1}' in a key", key),
                               statement.offset);
    };
    check(statement.primaryKey);
    CheckComputed(statement, statement.primaryKey);
    for (const auto& keys : statement.uniqueKeys) {
        check(keys);
        CheckComputed(statement, keys);
    }
}

Definition BindDefinition(Context& context, const ColumnDefinition& column, bool isSoleKey, bool notNull) {
    Definition definition{&column, isSoleKey, notNull};
    if (!column.source.empty()) return definition;
    if (column.defaultValue)
        definition.defaultValue = BindDefault(context, *column.defaultValue, column.type.type);
    else if (column.type.type == Type::Boolean)
        definition.defaultValue = NumberConstant("0", Type::Boolean);  // Jet's flags are never Null in a new row
    return definition;
}

void RefuseKeys(const ColumnDefinition& column, const char* how) {
    if (column.primaryKey || column.unique || column.type.counter)
        throw SqlError(ErrorKind::Unsupported, Translated(how), column.offset);
}

}  // namespace

SchemaChange BindCreateTable(Context& context, const CreateTableStatement& statement) {
    if (context.Tables().Find(statement.table))
        throw SqlError(ErrorKind::Syntax, Message("table '{1}' already exists", statement.table), statement.offset);
    CheckColumns(statement);
    SchemaChange change{&statement};
    change.primaryKey = PrimaryKeyOf(statement);
    bool rowId = false;
    for (const auto& column : statement.columns) {
        const bool key = Contains(change.primaryKey, column.name);
        const bool isSoleKey = key && change.primaryKey.size() == 1;
        Definition definition{&column, isSoleKey};
        if (definition.HoldsRowId() && rowId)
            throw SqlError(ErrorKind::Unsupported,
                           Message("a table has one COUNTER column, and a key beside it is no LONG"), column.offset);
        rowId = rowId || definition.HoldsRowId();
        change.columns.push_back(BindDefinition(context, column, isSoleKey, column.notNull || key));
    }
    return change;
}

SchemaChange BindCreateIndex(Context& context, const CreateIndexStatement& statement) {
    SchemaChange change{&statement};
    change.table = &context.Table(statement.table, statement.offset);
    for (const auto& key : statement.keys)
        change.keys.push_back(&RequireColumn(*change.table, key.column, statement.offset));
    return change;
}

SchemaChange BindAddColumn(Context& context, const AddColumnStatement& statement) {
    SchemaChange change{&statement};
    change.table = &context.Table(statement.table, statement.offset);
    const CatalogTable& table = *change.table;
    Keys seen;
    for (const ColumnDefinition& column : statement.columns) {
        if (FindColumn(table, column.name) || Contains(seen, column.name))
            throw SqlError(ErrorKind::Syntax, Message("the column '{1}' exists already", column.name), column.offset);
        seen.push_back(column.name);
        RefuseKeys(column, Translatable("a key or a COUNTER cannot be added to a table that exists"));
        if (!column.source.empty()) {
            const CatalogColumn& source = RequireColumn(table, column.source, column.offset);
            CheckComputed(column, source.name, source.type, !source.computed);
        }
        change.columns.push_back(BindDefinition(context, column, false, column.notNull));
    }
    return change;
}

SchemaChange BindAlterColumn(Context& context, const AlterColumnStatement& statement) {
    SchemaChange change{&statement};
    change.table = &context.Table(statement.table, statement.offset);
    const ColumnDefinition& definition = statement.column;
    const CatalogColumn& column = RequireColumn(*change.table, definition.name, definition.offset);
    RefuseKeys(definition, Translatable("a key or a COUNTER cannot be made of a column of a table that exists"));
    if (column.counter || column.computed || !definition.source.empty())
        throw SqlError(ErrorKind::Unsupported, Message("a COUNTER or a computed column keeps its type"),
                       definition.offset);
    change.keys.push_back(&column);
    change.columns.push_back(BindDefinition(context, definition, false, definition.notNull));
    // Without a DEFAULT of its own the column keeps the one it has.
    if (!definition.defaultValue) change.columns.back().defaultValue = nullptr;
    const SourcePtr source = SourceOfTable(*change.table, change.table->name, {});
    const auto position = static_cast<std::size_t>(&column - change.table->columns.data());
    CatalogColumn wanted = column;
    wanted.type = definition.type.type;
    wanted.length = definition.type.memo ? 0 : definition.type.length;
    change.changed = ColumnValue(context, ColumnOf(source, position), wanted);
    return change;
}

SchemaChange BindDropColumn(Context& context, const DropColumnStatement& statement) {
    SchemaChange change{&statement};
    change.table = &context.Table(statement.table, statement.offset);
    for (std::size_t i = 0; i < statement.columns.size(); ++i)
        change.keys.push_back(&RequireColumn(*change.table, statement.columns[i], statement.columnOffsets[i]));
    return change;
}

std::unique_ptr<CreateTableStatement> NewTableOf(const SelectIntoStatement& statement, const Catalog& catalog) {
    const BoundStatement bound = BindStatement(statement, catalog);
    const Query& query = *bound.query;
    const Select& first = query.members.front().select;
    const bool single = query.members.size() == 1;
    const bool keepsRows = single && !first.grouped && first.from.size() == 1 && first.from.front()->source;
    auto table = std::make_unique<CreateTableStatement>();
    table->table = statement.table;
    table->offset = statement.offset;
    bool counted = false;
    for (const Output& item : first.items) {
        ColumnDefinition column;
        column.name = item.name;
        column.offset = statement.offset;
        const auto* stored = single ? If<ColumnTerm>(item.term) : nullptr;
        const CatalogColumn* known =
            stored && stored->source->table ? &stored->source->table->columns[stored->column] : nullptr;
        column.type.type = item.term->type == Type::Null ? Type::Text : item.term->type;
        if (column.type.type == Type::Unknown)
            throw SqlError(ErrorKind::Unsupported,
                           Message("the type of the column '{1}' cannot be told: convert it", item.name),
                           item.term->offset);
        column.type.length = known ? known->length : 0;
        column.type.memo = column.type.type == Type::Text && column.type.length == 0;
        column.type.counter = keepsRows && !counted && known && known->counter;
        counted = counted || column.type.counter;
        table->columns.push_back(std::move(column));
    }
    return table;
}

}  // namespace kpTables::sql::bind
