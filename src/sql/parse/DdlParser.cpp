// Statements that create and change tables and indexes.
#include "sql/parse/ParserRules.h"

#include <algorithm>

#include "kpTables/text/Message.h"
#include "sql/Names.h"

namespace kpTables::sql::parse {

namespace {

/// True for DESC.
bool AcceptDirection(TokenCursor& cursor) {
    if (cursor.Accept("DESC")) return true;
    cursor.Accept("ASC");
    return false;
}

std::vector<std::string> ParseColumnNames(TokenCursor& cursor) {
    std::vector<std::string> names;
    cursor.ExpectOperator("(");
    do {
        names.push_back(cursor.TakeName("a column's name"));
        AcceptDirection(cursor);
    } while (cursor.AcceptOperator(","));
    cursor.ExpectOperator(")");
    return names;
}

/// How a server stores an index makes no difference here.
void SkipClustering(TokenCursor& cursor) {
    if (!cursor.Accept("CLUSTERED")) cursor.Accept("NONCLUSTERED");
}

bool AcceptPrimaryKey(TokenCursor& cursor) {
    if (!cursor.Accept("PRIMARY")) return false;
    cursor.Expect("KEY");
    SkipClustering(cursor);
    return true;
}

/// A book has no foreign keys: rows refer to others by id, and nothing enforces that.
void RefuseOtherConstraints(const TokenCursor& cursor) {
    for (const std::string_view word : {"REFERENCES", "FOREIGN", "CHECK"})
        if (cursor.At(word)) cursor.FailUnsupported(cursor.Peek(), Message("the constraint {1}", word));
}

bool AcceptDefault(TokenCursor& cursor, ColumnDefinition& column) {
    if (!cursor.Accept("DEFAULT")) return false;
    column.defaultValue = ParseExpression(cursor, Precedence::Sign);
    return true;
}

/// A default or a key of one column. The optional name is dropped: no engine needs it.
bool AcceptColumnKey(TokenCursor& cursor, ColumnDefinition& column) {
    const bool named = cursor.Accept("CONSTRAINT");
    if (named) cursor.TakeName("a constraint's name");
    if (AcceptPrimaryKey(cursor)) {
        column.primaryKey = true;
        return true;
    }
    if (cursor.Accept("UNIQUE")) {
        SkipClustering(cursor);
        column.unique = true;
        return true;
    }
    RefuseOtherConstraints(cursor);
    if (named && !AcceptDefault(cursor, column)) cursor.Fail("PRIMARY KEY, UNIQUE or DEFAULT");
    return named;
}

bool AcceptColumnOption(TokenCursor& cursor, ColumnDefinition& column) {
    if (cursor.Accept("NOT")) {
        cursor.Expect("NULL");
        column.notNull = true;
        return true;
    }
    if (cursor.Accept("NULL")) return true;
    if (AcceptDefault(cursor, column)) return true;
    if (column.type.type == Type::Long && cursor.At("IDENTITY")) {
        column.type = ParseTypeName(cursor, TypeUse::Column);
        return true;
    }
    return AcceptColumnKey(cursor, column);
}

ColumnDefinition ParseColumnDefinition(TokenCursor& cursor) {
    ColumnDefinition column;
    column.offset = cursor.Peek().offset;
    column.name = cursor.TakeName("a column's name");
    // SQL Server's computed columns have no type of their own.
    const bool typed = !(cursor.At("AS") && cursor.AtOperator("(", 1));
    if (typed) column.type = ParseTypeName(cursor, TypeUse::Column);
    if (!column.type.counter && cursor.Accept("AS")) {
        cursor.ExpectOperator("(");
        column.source = cursor.TakeName("a column's name");
        cursor.ExpectOperator(")");
        return column;
    }
    SkipCollation(cursor);
    while (AcceptColumnOption(cursor, column)) SkipCollation(cursor);
    return column;
}

/// The word COLUMN, unless it is a column's name.
bool AtColumnWord(const TokenCursor& cursor) { return cursor.At("COLUMN") && cursor.AtName(1); }

bool AtTableKey(const TokenCursor& cursor) {
    return cursor.At("CONSTRAINT") || cursor.At("PRIMARY") || cursor.At("UNIQUE") ||
           (cursor.At("FOREIGN") && cursor.At("KEY", 1)) || (cursor.At("CHECK") && cursor.AtOperator("(", 1));
}

void ParseTableKey(TokenCursor& cursor, CreateTableStatement& statement) {
    if (cursor.Accept("CONSTRAINT")) cursor.TakeName("a constraint's name");
    const Token& key = cursor.Peek();
    if (AcceptPrimaryKey(cursor)) {
        if (!statement.primaryKey.empty()) cursor.FailAt(key, Message("a table has one primary key"));
        statement.primaryKey = ParseColumnNames(cursor);
    } else if (cursor.Accept("UNIQUE")) {
        SkipClustering(cursor);
        statement.uniqueKeys.push_back(ParseColumnNames(cursor));
    } else {
        RefuseOtherConstraints(cursor);
        cursor.Fail("PRIMARY KEY or UNIQUE");
    }
}

/// A computed column without a type has that of the column that it is an alias of.
void TakeTypesOfSources(CreateTableStatement& statement) {
    for (ColumnDefinition& column : statement.columns) {
        if (column.source.empty() || column.type.type != Type::Unknown) continue;
        const auto source = std::ranges::find_if(
            statement.columns, [&](const ColumnDefinition& each) { return SameName(each.name, column.source); });
        if (source == statement.columns.end()) continue;
        column.type = source->type;
        column.type.counter = false;
    }
}

StatementPtr ParseCreateTable(TokenCursor& cursor) {
    auto statement = std::make_unique<CreateTableStatement>();
    statement->offset = cursor.Peek().offset;
    statement->table = ParseTableName(cursor);
    cursor.ExpectOperator("(");
    do {
        if (AtTableKey(cursor))
            ParseTableKey(cursor, *statement);
        else
            statement->columns.push_back(ParseColumnDefinition(cursor));
    } while (cursor.AcceptOperator(","));
    if (statement->columns.empty()) cursor.Fail("a column");
    TakeTypesOfSources(*statement);
    cursor.ExpectOperator(")");
    // "ON [PRIMARY]" names a server's file group.
    if (cursor.Accept("ON")) cursor.TakeName("a file group's name");
    return statement;
}

StatementPtr ParseCreateIndex(TokenCursor& cursor, bool unique) {
    auto statement = std::make_unique<CreateIndexStatement>();
    statement->unique = unique;
    statement->offset = cursor.Peek().offset;
    statement->index = cursor.TakeName("an index's name");
    cursor.Expect("ON");
    statement->table = ParseTableName(cursor);
    cursor.ExpectOperator("(");
    do {
        CreateIndexStatement::Key key;
        key.column = cursor.TakeName("a column's name");
        key.descending = AcceptDirection(cursor);
        statement->keys.push_back(std::move(key));
    } while (cursor.AcceptOperator(","));
    cursor.ExpectOperator(")");
    if (cursor.At("INCLUDE")) cursor.FailUnsupported(cursor.Peek(), Message("INCLUDE of an index"));
    if (!cursor.Accept("WITH")) return statement;
    if (cursor.At("DISALLOW"))
        cursor.FailUnsupported(cursor.Peek(), Message("DISALLOW NULL of an index: make the column NOT NULL; it"));
    // Rows without a value are no duplicates of each other in any index.
    if (cursor.Accept("IGNORE")) {
        cursor.Expect("NULL");
    } else {
        if (!cursor.Accept("PRIMARY")) cursor.Fail("PRIMARY or IGNORE NULL");
        statement->unique = true;
    }
    return statement;
}

/// "ADD [CONSTRAINT name] PRIMARY KEY|UNIQUE (columns)": a key of a table that exists is a unique index.
StatementPtr ParseAddKey(TokenCursor& cursor, std::string table, std::size_t offset) {
    auto statement = std::make_unique<CreateIndexStatement>();
    statement->unique = true;
    statement->table = std::move(table);
    statement->offset = offset;
    if (cursor.Accept("CONSTRAINT")) statement->index = cursor.TakeName("a constraint's name");
    RefuseOtherConstraints(cursor);
    const bool primary = AcceptPrimaryKey(cursor);
    if (!primary) {
        cursor.Expect("UNIQUE");
        SkipClustering(cursor);
    }
    for (std::string& column : ParseColumnNames(cursor)) {
        if (statement->index.empty()) statement->index = (primary ? "PK_" : "UQ_") + column;
        statement->keys.push_back({std::move(column), false});
    }
    return statement;
}

StatementPtr ParseAddColumns(TokenCursor& cursor, std::string table, std::size_t offset) {
    auto statement = std::make_unique<AddColumnStatement>();
    statement->table = std::move(table);
    statement->offset = offset;
    if (AtColumnWord(cursor)) cursor.Take();
    const bool enclosed = cursor.AcceptOperator("(");
    do statement->columns.push_back(ParseColumnDefinition(cursor));
    while (cursor.AcceptOperator(","));
    if (enclosed) cursor.ExpectOperator(")");
    return statement;
}

StatementPtr ParseDropColumns(TokenCursor& cursor, std::string table, std::size_t offset) {
    auto statement = std::make_unique<DropColumnStatement>();
    statement->table = std::move(table);
    statement->offset = offset;
    do {
        if (AtColumnWord(cursor)) cursor.Take();
        statement->columnOffsets.push_back(cursor.Peek().offset);
        statement->columns.push_back(cursor.TakeName("a column's name"));
    } while (cursor.AcceptOperator(","));
    return statement;
}

StatementPtr ParseAlterColumn(TokenCursor& cursor, std::string table, std::size_t offset) {
    auto statement = std::make_unique<AlterColumnStatement>();
    statement->table = std::move(table);
    statement->offset = offset;
    if (AtColumnWord(cursor)) cursor.Take();
    statement->column = ParseColumnDefinition(cursor);
    return statement;
}

StatementPtr ParseDropConstraint(TokenCursor& cursor, std::string table, std::size_t offset) {
    auto statement = std::make_unique<DropIndexStatement>();
    statement->table = std::move(table);
    statement->offset = offset;
    statement->index = cursor.TakeName("a constraint's name");
    return statement;
}

}  // namespace

StatementPtr ParseCreate(TokenCursor& cursor) {
    cursor.Take();
    if (cursor.Accept("TABLE")) return ParseCreateTable(cursor);
    const bool unique = cursor.Accept("UNIQUE");
    SkipClustering(cursor);
    for (const std::string_view word : {"VIEW", "PROCEDURE", "PROC", "FUNCTION", "TRIGGER"})
        if (!unique && cursor.At(word))
            cursor.FailUnsupported(cursor.Peek(), Message("CREATE {1}: keep the statement in the program; it", word));
    if (!cursor.Accept("INDEX")) cursor.Fail(unique ? "INDEX" : Translatable("TABLE or INDEX"));
    return ParseCreateIndex(cursor, unique);
}

StatementPtr ParseDrop(TokenCursor& cursor) {
    cursor.Take();
    if (cursor.Accept("TABLE")) {
        auto statement = std::make_unique<DropTableStatement>();
        statement->ifExists = cursor.At("IF") && cursor.At("EXISTS", 1);
        if (statement->ifExists) cursor.Take();
        if (statement->ifExists) cursor.Take();
        statement->offset = cursor.Peek().offset;
        statement->table = ParseTableName(cursor);
        return statement;
    }
    if (!cursor.Accept("INDEX")) cursor.Fail("TABLE or INDEX");
    auto statement = std::make_unique<DropIndexStatement>();
    statement->offset = cursor.Peek().offset;
    if (cursor.AtOperator(".", 3)) SkipSchema(cursor);
    statement->index = cursor.TakeName("an index's name");
    if (cursor.AcceptOperator(".")) {
        statement->table = std::move(statement->index);
        statement->index = cursor.TakeName("an index's name");
        return statement;
    }
    cursor.Expect("ON");
    statement->table = ParseTableName(cursor);
    return statement;
}

StatementPtr ParseAlter(TokenCursor& cursor) {
    cursor.Take();
    cursor.Expect("TABLE");
    const std::size_t offset = cursor.Peek().offset;
    std::string table = ParseTableName(cursor);
    if (cursor.Accept("ADD"))
        return AtTableKey(cursor) ? ParseAddKey(cursor, std::move(table), offset)
                                  : ParseAddColumns(cursor, std::move(table), offset);
    if (cursor.Accept("ALTER")) return ParseAlterColumn(cursor, std::move(table), offset);
    if (!cursor.Accept("DROP")) cursor.Fail("ADD, ALTER or DROP");
    return cursor.Accept("CONSTRAINT") ? ParseDropConstraint(cursor, std::move(table), offset)
                                       : ParseDropColumns(cursor, std::move(table), offset);
}

}  // namespace kpTables::sql::parse
