// FROM: tables, derived tables, and joins.
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

TablePtr ParseSingleTable(TokenCursor& cursor) {
    const std::size_t at = cursor.Peek().offset;
    if (!cursor.AtOperator("(")) {
        std::string name = cursor.TakeName("a table's name");
        return std::make_unique<NamedTable>(std::move(name), ParseAlias(cursor), at);
    }
    if (cursor.AtQuery(1)) {
        std::unique_ptr<Query> query = ParseQueryInParentheses(cursor);
        return std::make_unique<DerivedTable>(std::move(query), ParseAlias(cursor), at);
    }
    cursor.Take();
    TablePtr table = ParseTable(cursor);
    cursor.ExpectOperator(")");
    return table;
}

/// Takes "INNER JOIN", "LEFT [OUTER] JOIN" or "RIGHT [OUTER] JOIN"; false when there is none here.
bool AcceptJoin(TokenCursor& cursor, JoinKind& kind) {
    if (cursor.Accept("INNER")) {
        kind = JoinKind::Inner;
    } else if (cursor.Accept("LEFT")) {
        kind = JoinKind::Left;
        cursor.Accept("OUTER");
    } else if (cursor.Accept("RIGHT")) {
        kind = JoinKind::Right;
        cursor.Accept("OUTER");
    } else {
        return false;
    }
    cursor.Expect("JOIN");
    return true;
}

}  // namespace

TablePtr ParseTable(TokenCursor& cursor) {
    TokenCursor::Nesting nesting(cursor);
    nesting.Deepen();
    TablePtr left = ParseSingleTable(cursor);
    JoinKind kind{};
    for (std::size_t at = cursor.Peek().offset; AcceptJoin(cursor, kind); at = cursor.Peek().offset) {
        nesting.Deepen();
        TablePtr right = ParseSingleTable(cursor);
        cursor.Expect("ON");
        ExpressionPtr on = ParseExpression(cursor);
        left = std::make_unique<JoinedTable>(kind, std::move(left), std::move(right), std::move(on), at);
    }
    return left;
}

}  // namespace kpTables::sql::parse
