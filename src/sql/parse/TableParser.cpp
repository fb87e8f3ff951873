// FROM: tables, derived tables, and joins.
#include "kpTables/text/Message.h"
#include "sql/parse/Keywords.h"
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

/// "WITH (NOLOCK)" asks to read what others have not committed, which no engine here does.
void SkipHint(TokenCursor& cursor) {
    if (!cursor.At("WITH") || !cursor.AtOperator("(", 1)) return;
    cursor.Take();
    cursor.Take();
    if (!cursor.Accept("NOLOCK") && !cursor.Accept("READUNCOMMITTED"))
        cursor.FailUnsupported(cursor.Peek(), Message("a table hint other than NOLOCK"));
    cursor.ExpectOperator(")");
}

TablePtr ParseSingleTable(TokenCursor& cursor) {
    const std::size_t at = cursor.Peek().offset;
    if (!cursor.AtOperator("(")) {
        std::string name = ParseTableName(cursor);
        std::string alias = ParseAlias(cursor);
        SkipHint(cursor);
        return std::make_unique<NamedTable>(std::move(name), std::move(alias), at);
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

struct JoinWords {
    JoinKind kind = JoinKind::Inner;
    bool crosses = false;  ///< CROSS JOIN has no condition
};

/// Takes "[INNER] JOIN", "LEFT [OUTER] JOIN", "RIGHT [OUTER] JOIN" or "CROSS JOIN"; false when there is none here.
bool AcceptJoin(TokenCursor& cursor, JoinWords& words) {
    words = {};
    if (cursor.Accept("LEFT") || cursor.At("RIGHT")) {
        words.kind = cursor.Accept("RIGHT") ? JoinKind::Right : JoinKind::Left;
        cursor.Accept("OUTER");
    } else if (cursor.At("CROSS") && cursor.At("JOIN", 1)) {
        cursor.Take();
        words.crosses = true;
    } else if (cursor.At("FULL") && (cursor.At("JOIN", 1) || cursor.At("OUTER", 1))) {
        cursor.FailUnsupported(cursor.Peek(), "FULL JOIN");
    } else if (!cursor.Accept("INNER") && !cursor.At("JOIN")) {
        return false;
    }
    cursor.Expect("JOIN");
    return true;
}

/// Everything that is joined to the table on the left.
TablePtr ParseJoins(TokenCursor& cursor, TablePtr left) {
    TokenCursor::Nesting nesting(cursor);
    JoinWords words;
    for (std::size_t at = cursor.Peek().offset; AcceptJoin(cursor, words); at = cursor.Peek().offset) {
        nesting.Deepen();
        TablePtr right = ParseSingleTable(cursor);
        ExpressionPtr on;
        if (words.crosses) {
            on = std::make_unique<Literal>(LiteralKind::Boolean, "True", -1, at);
        } else {
            // "A JOIN B JOIN C ON ... ON ..." joins B and C first.
            if (!cursor.At("ON")) right = ParseJoins(cursor, std::move(right));
            cursor.Expect("ON");
            on = ParseExpression(cursor);
        }
        left = std::make_unique<JoinedTable>(words.kind, std::move(left), std::move(right), std::move(on), at);
    }
    return left;
}

}  // namespace

void SkipSchema(TokenCursor& cursor) {
    const Token& schema = cursor.Peek();
    const bool isName = schema.kind == TokenKind::Word || schema.kind == TokenKind::QuotedName;
    if (!isName || !SameWord(schema.text, "dbo") || !cursor.AtOperator(".", 1) || !cursor.AtName(2)) return;
    cursor.Take();
    cursor.Take();
}

std::string ParseTableName(TokenCursor& cursor) {
    SkipSchema(cursor);
    return cursor.TakeName("a table's name");
}

TablePtr ParseTable(TokenCursor& cursor) {
    TokenCursor::Nesting nesting(cursor);
    nesting.Deepen();
    TablePtr left = ParseSingleTable(cursor);
    return ParseJoins(cursor, std::move(left));
}

std::vector<TablePtr> ParseTables(TokenCursor& cursor) {
    std::vector<TablePtr> tables;
    do tables.push_back(ParseTable(cursor));
    while (cursor.AcceptOperator(","));
    return tables;
}

}  // namespace kpTables::sql::parse
