// Whole statements: the entry point, and those that change rows.
#include <array>

#include "sql/parse/Parser.h"
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

StatementPtr ParseSelect(TokenCursor& cursor) {
    auto statement = std::make_unique<SelectStatement>();
    statement->query = ParseQuery(cursor);
    return statement;
}

struct StatementRule {
    std::string_view word;
    StatementPtr (*parse)(TokenCursor&);
};

constexpr std::array<StatementRule, 8> kStatements = {{{"SELECT", ParseSelect},
                                                       {"TRANSFORM", ParseTransform},
                                                       {"INSERT", ParseInsert},
                                                       {"UPDATE", ParseUpdate},
                                                       {"DELETE", ParseDelete},
                                                       {"CREATE", ParseCreate},
                                                       {"DROP", ParseDrop},
                                                       {"ALTER", ParseAlter}}};

StatementPtr ParseStatement(TokenCursor& cursor) {
    if (cursor.AtOperator("(")) return ParseSelect(cursor);
    for (const StatementRule& rule : kStatements)
        if (cursor.At(rule.word)) return rule.parse(cursor);
    cursor.Fail("SELECT, TRANSFORM, INSERT, UPDATE, DELETE, CREATE, DROP or ALTER");
}

UpdateStatement::Assignment ParseAssignment(TokenCursor& cursor) {
    UpdateStatement::Assignment assignment;
    assignment.offset = cursor.Peek().offset;
    assignment.column = cursor.TakeName("a column's name");
    if (cursor.AcceptOperator(".")) {
        assignment.table = std::move(assignment.column);
        assignment.column = cursor.TakeName("a column's name");
    }
    const OperatorInfo* info = FindOperator(cursor.Peek());
    if (!info || info->op != BinaryOperator::Equal) cursor.Fail("'='");
    cursor.Take();
    assignment.value = ParseExpression(cursor);
    return assignment;
}

}  // namespace

StatementPtr Parse(std::string_view text, std::span<const NamedLiteral> named, Dialect dialect) {
    TokenCursor cursor(text, named, dialect);
    StatementPtr statement = ParseStatement(cursor);
    if (cursor.AcceptOperator(";") && !cursor.AtEnd()) cursor.FailAt(cursor.Peek(), "one statement only");
    if (!cursor.AtEnd()) cursor.Fail("the statement's end");
    statement->dialect = dialect;
    statement->fixedLiterals = cursor.TakeFixedLiterals();
    return statement;
}

StatementPtr ParseTransform(TokenCursor& cursor) {
    cursor.Take();
    auto statement = std::make_unique<TransformStatement>();
    statement->aggregate.expression = ParseExpression(cursor);
    statement->aggregate.alias = ParseAlias(cursor);
    const Token& select = cursor.Peek();
    if (!cursor.At("SELECT")) cursor.Fail("SELECT");
    statement->query = ParseQuery(cursor);
    if (statement->query->members.size() > 1) cursor.FailUnsupported(select, "TRANSFORM of a UNION");
    cursor.Expect("PIVOT");
    // IN after the pivot's expression is its list of values, not a comparison.
    statement->pivot = ParseExpression(cursor, Tighter(Precedence::Comparison));
    if (cursor.Accept("IN")) {
        cursor.ExpectOperator("(");
        statement->values = ParseExpressions(cursor);
        cursor.ExpectOperator(")");
    }
    return statement;
}

StatementPtr ParseInsert(TokenCursor& cursor) {
    cursor.Take();
    cursor.Expect("INTO");
    auto statement = std::make_unique<InsertStatement>();
    statement->offset = cursor.Peek().offset;
    statement->table = cursor.TakeName("a table's name");
    if (cursor.AtOperator("(") && !cursor.AtQuery()) {
        do {
            cursor.Take();
            statement->columnOffsets.push_back(cursor.Peek().offset);
            statement->columns.push_back(cursor.TakeName("a column's name"));
        } while (cursor.AtOperator(","));
        cursor.ExpectOperator(")");
    }
    if (cursor.AtQuery()) {
        statement->query = ParseQuery(cursor);
        return statement;
    }
    if (!cursor.Accept("VALUES")) cursor.Fail("VALUES or SELECT");
    cursor.ExpectOperator("(");
    statement->values = ParseExpressions(cursor);
    cursor.ExpectOperator(")");
    return statement;
}

StatementPtr ParseUpdate(TokenCursor& cursor) {
    cursor.Take();
    auto statement = std::make_unique<UpdateStatement>();
    statement->offset = cursor.Peek().offset;
    statement->table = cursor.TakeName("a table's name");
    statement->alias = ParseAlias(cursor);
    cursor.Expect("SET");
    do statement->assignments.push_back(ParseAssignment(cursor));
    while (cursor.AcceptOperator(","));
    if (cursor.Accept("WHERE")) statement->where = ParseExpression(cursor);
    return statement;
}

StatementPtr ParseDelete(TokenCursor& cursor) {
    cursor.Take();
    cursor.AcceptOperator("*");
    cursor.Expect("FROM");
    auto statement = std::make_unique<DeleteStatement>();
    statement->offset = cursor.Peek().offset;
    statement->table = cursor.TakeName("a table's name");
    statement->alias = ParseAlias(cursor);
    if (cursor.Accept("WHERE")) statement->where = ParseExpression(cursor);
    return statement;
}

}  // namespace kpTables::sql::parse
