// Statements that create and change tables and indexes.
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

std::vector<std::string> ParseColumnNames(TokenCursor& cursor) {
    std::vector<std::string> names;
    cursor.ExpectOperator("(");
    do names.push_back(cursor.TakeName("a column's name"));
    while (cursor.AcceptOperator(","));
    cursor.ExpectOperator(")");
    return names;
}

bool AcceptPrimaryKey(TokenCursor& cursor) {
    if (!cursor.Accept("PRIMARY")) return false;
    cursor.Expect("KEY");
    return true;
}

/// A key of one column. Its optional name is dropped: no engine needs it.
bool AcceptColumnKey(TokenCursor& cursor, ColumnDefinition& column) {
    const bool named = cursor.Accept("CONSTRAINT");
    if (named) cursor.TakeName("a constraint's name");
    if (AcceptPrimaryKey(cursor)) {
        column.primaryKey = true;
        return true;
    }
    if (cursor.Accept("UNIQUE")) {
        column.unique = true;
        return true;
    }
    if (named) cursor.Fail("PRIMARY KEY or UNIQUE");
    return false;
}

bool AcceptColumnOption(TokenCursor& cursor, ColumnDefinition& column) {
    if (cursor.Accept("NOT")) {
        cursor.Expect("NULL");
        column.notNull = true;
        return true;
    }
    if (cursor.Accept("NULL")) return true;
    if (cursor.Accept("DEFAULT")) {
        column.defaultValue = ParseExpression(cursor, Precedence::Sign);
        return true;
    }
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
    column.type = ParseTypeName(cursor, TypeUse::Column);
    if (!column.type.counter && cursor.Accept("AS")) {
        cursor.ExpectOperator("(");
        column.source = cursor.TakeName("a column's name");
        cursor.ExpectOperator(")");
        return column;
    }
    while (AcceptColumnOption(cursor, column)) {
    }
    return column;
}

bool AtTableKey(const TokenCursor& cursor) {
    return cursor.At("CONSTRAINT") || cursor.At("PRIMARY") || cursor.At("UNIQUE");
}

void ParseTableKey(TokenCursor& cursor, CreateTableStatement& statement) {
    if (cursor.Accept("CONSTRAINT")) cursor.TakeName("a constraint's name");
    const Token& key = cursor.Peek();
    if (AcceptPrimaryKey(cursor)) {
        if (!statement.primaryKey.empty()) cursor.FailAt(key, "a table has one primary key");
        statement.primaryKey = ParseColumnNames(cursor);
    } else if (cursor.Accept("UNIQUE")) {
        statement.uniqueKeys.push_back(ParseColumnNames(cursor));
    } else {
        cursor.Fail("PRIMARY KEY or UNIQUE");
    }
}

StatementPtr ParseCreateTable(TokenCursor& cursor) {
    auto statement = std::make_unique<CreateTableStatement>();
    statement->offset = cursor.Peek().offset;
    statement->table = cursor.TakeName("a table's name");
    cursor.ExpectOperator("(");
    do {
        if (AtTableKey(cursor))
            ParseTableKey(cursor, *statement);
        else
            statement->columns.push_back(ParseColumnDefinition(cursor));
    } while (cursor.AcceptOperator(","));
    if (statement->columns.empty()) cursor.Fail("a column");
    cursor.ExpectOperator(")");
    return statement;
}

StatementPtr ParseCreateIndex(TokenCursor& cursor, bool unique) {
    auto statement = std::make_unique<CreateIndexStatement>();
    statement->unique = unique;
    statement->offset = cursor.Peek().offset;
    statement->index = cursor.TakeName("an index's name");
    cursor.Expect("ON");
    statement->table = cursor.TakeName("a table's name");
    cursor.ExpectOperator("(");
    do {
        CreateIndexStatement::Key key;
        key.column = cursor.TakeName("a column's name");
        key.descending = cursor.Accept("DESC");
        if (!key.descending) cursor.Accept("ASC");
        statement->keys.push_back(std::move(key));
    } while (cursor.AcceptOperator(","));
    cursor.ExpectOperator(")");
    return statement;
}

}  // namespace

StatementPtr ParseCreate(TokenCursor& cursor) {
    cursor.Take();
    if (cursor.Accept("TABLE")) return ParseCreateTable(cursor);
    const bool unique = cursor.Accept("UNIQUE");
    if (!cursor.Accept("INDEX")) cursor.Fail(unique ? "INDEX" : "TABLE or INDEX");
    return ParseCreateIndex(cursor, unique);
}

StatementPtr ParseDrop(TokenCursor& cursor) {
    cursor.Take();
    if (cursor.Accept("TABLE")) {
        auto statement = std::make_unique<DropTableStatement>();
        statement->offset = cursor.Peek().offset;
        statement->table = cursor.TakeName("a table's name");
        return statement;
    }
    if (!cursor.Accept("INDEX")) cursor.Fail("TABLE or INDEX");
    auto statement = std::make_unique<DropIndexStatement>();
    statement->offset = cursor.Peek().offset;
    statement->index = cursor.TakeName("an index's name");
    cursor.Expect("ON");
    statement->table = cursor.TakeName("a table's name");
    return statement;
}

StatementPtr ParseAlter(TokenCursor& cursor) {
    cursor.Take();
    cursor.Expect("TABLE");
    auto statement = std::make_unique<AddColumnStatement>();
    statement->offset = cursor.Peek().offset;
    statement->table = cursor.TakeName("a table's name");
    cursor.Expect("ADD");
    cursor.Accept("COLUMN");
    statement->column = ParseColumnDefinition(cursor);
    return statement;
}

}  // namespace kpTables::sql::parse
