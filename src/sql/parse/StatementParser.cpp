// Whole statements: the entry point, and those that change rows.
#include <array>

#include "kpTables/text/Message.h"
#include "sql/parse/Parser.h"
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

struct StatementRule {
    std::string_view word;
    StatementPtr (*parse)(TokenCursor&);
};

constexpr std::array<StatementRule, 14> kStatements = {{{"SELECT", ParseSelect},
                                                        {"TRANSFORM", ParseTransform},
                                                        {"INSERT", ParseInsert},
                                                        {"UPDATE", ParseUpdate},
                                                        {"DELETE", ParseDelete},
                                                        {"CREATE", ParseCreate},
                                                        {"DROP", ParseDrop},
                                                        {"ALTER", ParseAlter},
                                                        {"TRUNCATE", ParseTruncate},
                                                        {"WITH", ParseWith},
                                                        {"BEGIN", ParseSession},
                                                        {"COMMIT", ParseSession},
                                                        {"ROLLBACK", ParseSession},
                                                        {"SET", ParseSession}}};

/// Statements of the server that no book has, with what to do instead.
struct Refusal {
    std::string_view word;
    const char* what;  ///< to be translated
};

constexpr std::array<Refusal, 13> kRefusals = {{
    {"USE", Translatable("USE chooses a server's database: leave it out; it")},
    {"GO", Translatable("GO belongs to a server's tools: leave it out; it")},
    {"PRINT", "PRINT"},
    {"DECLARE", Translatable("DECLARE where one statement stands alone")},
    {"IF", Translatable("IF where one statement stands alone")},
    {"WHILE", Translatable("WHILE: repeat the statements in the program; it")},
    {"EXEC", Translatable("EXEC of a stored procedure")},
    {"EXECUTE", Translatable("EXECUTE of a stored procedure")},
    {"MERGE", Translatable("MERGE: use UPDATE and INSERT; it")},
    {"GRANT", "GRANT"},
    {"REVOKE", "REVOKE"},
    {"BACKUP", Translatable("BACKUP: copy the book instead; it")},
    {"RESTORE", "RESTORE"},
}};

StatementPtr ParseStatement(TokenCursor& cursor) {
    if (cursor.AtOperator("(")) return ParseSelect(cursor);
    for (const StatementRule& rule : kStatements)
        if (cursor.At(rule.word)) return rule.parse(cursor);
    for (const Refusal& refusal : kRefusals)
        if (cursor.At(refusal.word)) cursor.FailUnsupported(cursor.Peek(), Translated(refusal.what));
    cursor.Fail("SELECT, TRANSFORM, INSERT, UPDATE, DELETE, CREATE, DROP, ALTER, TRUNCATE or WITH");
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

bool AtTop(const TokenCursor& cursor) {
    return cursor.At("TOP") && (cursor.AtOperator("(", 1) || cursor.Peek(1).kind == TokenKind::Literal);
}

/// "TOP (n)" before the table of a change; null when there is none.
ExpressionPtr ParseChangedTop(TokenCursor& cursor) {
    if (!AtTop(cursor)) return nullptr;
    cursor.Take();
    const bool enclosed = cursor.AcceptOperator("(");
    ExpressionPtr top = ParseCount(cursor, false, "a whole number after TOP");
    if (enclosed) cursor.ExpectOperator(")");
    if (cursor.At("PERCENT"))
        cursor.FailUnsupported(cursor.Peek(), Message("PERCENT in a statement that changes rows"));
    return top;
}

/// In a join nothing says which rows are the first n.
void RefuseTopOfJoin(TokenCursor& cursor, const Token& at, const ExpressionPtr& top,
                     const std::vector<TablePtr>& from) {
    if (top && !from.empty()) cursor.FailUnsupported(at, Message("TOP in a change of joined tables"));
}

void RefuseOutput(const TokenCursor& cursor) {
    if (cursor.At("OUTPUT"))
        cursor.FailUnsupported(cursor.Peek(), Message("OUTPUT: read the rows in a statement of their own; it"));
}

std::vector<ExpressionPtr> ParseRow(TokenCursor& cursor) {
    cursor.ExpectOperator("(");
    std::vector<ExpressionPtr> row = ParseExpressions(cursor);
    cursor.ExpectOperator(")");
    return row;
}

/// A table alone gives its name and alias; any others are a join.
void TakeTables(std::vector<TablePtr> tables, std::string& name, std::string& alias, std::vector<TablePtr>& joined) {
    if (tables.size() > 1 || tables.front()->kind != TableKind::Named) {
        joined = std::move(tables);
        return;
    }
    auto& table = static_cast<NamedTable&>(*tables.front());
    name = std::move(table.name);
    alias = std::move(table.alias);
}

}  // namespace

StatementPtr ParseSelect(TokenCursor& cursor) {
    cursor.AllowNewTable();
    std::unique_ptr<Query> query = ParseQuery(cursor);
    if (!cursor.MadeTable()) {
        auto statement = std::make_unique<SelectStatement>();
        statement->query = std::move(query);
        return statement;
    }
    auto statement = std::make_unique<SelectIntoStatement>();
    statement->table = cursor.MadeTable()->name;
    statement->offset = cursor.MadeTable()->offset;
    statement->query = std::move(query);
    return statement;
}

StatementPtr ParseWith(TokenCursor& cursor) {
    cursor.Take();
    std::vector<CommonTable> with;
    do {
        CommonTable table;
        table.offset = cursor.Peek().offset;
        table.name = cursor.TakeName("a name after WITH");
        if (cursor.AcceptOperator("(")) {
            do table.columns.push_back(cursor.TakeName("a column's name"));
            while (cursor.AcceptOperator(","));
            cursor.ExpectOperator(")");
        }
        cursor.Expect("AS");
        if (!cursor.AtQuery(1)) cursor.Fail("a query in parentheses");
        table.query = ParseQueryInParentheses(cursor);
        with.push_back(std::move(table));
    } while (cursor.AcceptOperator(","));
    StatementPtr statement;
    if (cursor.AtQuery())
        statement = ParseSelect(cursor);
    else if (cursor.At("INSERT"))
        statement = ParseInsert(cursor);
    else if (cursor.At("UPDATE"))
        statement = ParseUpdate(cursor);
    else if (cursor.At("DELETE"))
        statement = ParseDelete(cursor);
    else
        cursor.Fail("SELECT, INSERT, UPDATE or DELETE");
    statement->with = std::move(with);
    return statement;
}

StatementPtr Parse(std::string_view text, std::span<const NamedLiteral> named, Dialect dialect) {
    TokenCursor cursor(text, named, dialect);
    StatementPtr statement = ParseStatement(cursor);
    if (cursor.AcceptOperator(";") && !cursor.AtEnd()) cursor.FailAt(cursor.Peek(), Message("one statement only"));
    if (cursor.At("PIVOT")) cursor.FailUnsupported(cursor.Peek(), Message("PIVOT behind a table: use TRANSFORM; it"));
    if (cursor.At("IN")) cursor.FailUnsupported(cursor.Peek(), Message("IN of another database"));
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
    if (statement->query->members.size() > 1) cursor.FailUnsupported(select, Message("TRANSFORM of a UNION"));
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
    if (AtTop(cursor)) cursor.FailUnsupported(cursor.Peek(), Message("TOP before INTO: put it behind SELECT; it"));
    cursor.Accept("INTO");
    auto statement = std::make_unique<InsertStatement>();
    statement->offset = cursor.Peek().offset;
    statement->table = ParseTableName(cursor);
    if (cursor.AtOperator("(") && !cursor.AtQuery()) {
        do {
            cursor.Take();
            statement->columnOffsets.push_back(cursor.Peek().offset);
            statement->columns.push_back(cursor.TakeName("a column's name"));
        } while (cursor.AtOperator(","));
        cursor.ExpectOperator(")");
    }
    RefuseOutput(cursor);
    if (cursor.AtQuery()) {
        statement->query = ParseQuery(cursor);
        return statement;
    }
    if (statement->columns.empty() && cursor.Accept("DEFAULT")) {
        cursor.Expect("VALUES");
        return statement;
    }
    if (!cursor.Accept("VALUES")) cursor.Fail("VALUES or SELECT");
    do statement->rows.push_back(ParseRow(cursor));
    while (cursor.AcceptOperator(","));
    return statement;
}

StatementPtr ParseUpdate(TokenCursor& cursor) {
    cursor.Take();
    auto statement = std::make_unique<UpdateStatement>();
    const Token& top = cursor.Peek();
    statement->top = ParseChangedTop(cursor);
    cursor.Accept("DISTINCTROW");
    statement->offset = cursor.Peek().offset;
    TakeTables(ParseTables(cursor), statement->table, statement->alias, statement->from);
    cursor.Expect("SET");
    do statement->assignments.push_back(ParseAssignment(cursor));
    while (cursor.AcceptOperator(","));
    RefuseOutput(cursor);
    if (!statement->table.empty() && cursor.Accept("FROM")) statement->from = ParseTables(cursor);
    RefuseTopOfJoin(cursor, top, statement->top, statement->from);
    if (cursor.Accept("WHERE")) statement->where = ParseExpression(cursor);
    return statement;
}

/// "DELETE [*] FROM T", "DELETE a.* FROM tables", "DELETE [FROM] a FROM tables", "DELETE T".
StatementPtr ParseDelete(TokenCursor& cursor) {
    cursor.Take();
    auto statement = std::make_unique<DeleteStatement>();
    const Token& top = cursor.Peek();
    statement->top = ParseChangedTop(cursor);
    cursor.Accept("DISTINCTROW");
    statement->offset = cursor.Peek().offset;
    if (cursor.AcceptOperator("*")) {
        cursor.Expect("FROM");
    } else if (!cursor.Accept("FROM")) {
        statement->table = ParseTableName(cursor);
        const bool allColumns = cursor.AcceptOperator(".");
        if (allColumns) cursor.ExpectOperator("*");
        if (allColumns && !cursor.At("FROM")) cursor.Fail("FROM");
        if (!cursor.Accept("FROM")) {
            if (cursor.Accept("WHERE")) statement->where = ParseExpression(cursor);
            return statement;
        }
        statement->from = ParseTables(cursor);
    }
    if (statement->table.empty()) {
        const Token& first = cursor.Peek();
        statement->offset = first.offset;
        TakeTables(ParseTables(cursor), statement->table, statement->alias, statement->from);
        if (statement->table.empty())
            cursor.FailAt(first, Message("name the table whose rows are deleted before FROM"));
        if (statement->alias.empty() && cursor.Accept("FROM")) statement->from = ParseTables(cursor);
    }
    RefuseTopOfJoin(cursor, top, statement->top, statement->from);
    RefuseOutput(cursor);
    if (cursor.Accept("WHERE")) statement->where = ParseExpression(cursor);
    return statement;
}

StatementPtr ParseTruncate(TokenCursor& cursor) {
    cursor.Take();
    cursor.Expect("TABLE");
    auto statement = std::make_unique<DeleteStatement>();
    statement->offset = cursor.Peek().offset;
    statement->table = ParseTableName(cursor);
    statement->truncates = true;
    return statement;
}

}  // namespace kpTables::sql::parse
