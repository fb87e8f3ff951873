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
    if (cursor.At("VALUES", 1) && cursor.AtOperator("(", 2)) return ParseValuesTable(cursor);
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
        cursor.Take();
        cursor.Accept("OUTER");
        words.kind = JoinKind::Full;
    } else if ((cursor.At("CROSS") || cursor.At("OUTER")) && cursor.At("APPLY", 1)) {
        cursor.FailUnsupported(cursor.Peek(), Message("{1} APPLY: use a sub-query in the select list; it",
                                                      std::string(cursor.Peek().text)));
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

TablePtr ParseValuesTable(TokenCursor& cursor) {
    TokenCursor::Nesting nesting(cursor);
    nesting.Deepen();
    const std::size_t at = cursor.Take().offset;
    cursor.Take();
    auto query = std::make_unique<Query>();
    query->offset = at;
    do {
        const Token& row = cursor.Peek();
        cursor.ExpectOperator("(");
        Query::Member member;
        member.operation = query->members.empty() ? SetOperation::Union : SetOperation::UnionAll;
        member.core = std::make_unique<SelectCore>();
        for (ExpressionPtr& value : ParseExpressions(cursor)) member.core->items.push_back({std::move(value), {}});
        cursor.ExpectOperator(")");
        if (!query->members.empty() && member.core->items.size() != query->members.front().core->items.size())
            cursor.FailAt(row, Message("every row of VALUES has as many values as the first"));
        query->members.push_back(std::move(member));
    } while (cursor.AcceptOperator(","));
    cursor.ExpectOperator(")");
    std::string alias = ParseAlias(cursor);
    if (alias.empty() || !cursor.AtOperator("(")) cursor.Fail("a name with its columns behind VALUES");
    for (SelectItem& item : query->members.front().core->items) {
        cursor.Take();
        item.alias = cursor.TakeName("a column's name");
        if (!cursor.AtOperator(",") && &item != &query->members.front().core->items.back()) cursor.Fail("','");
    }
    cursor.ExpectOperator(")");
    return std::make_unique<DerivedTable>(std::move(query), std::move(alias), at);
}

void SkipSchema(TokenCursor& cursor) {
    const Token& schema = cursor.Peek();
    const bool isName = schema.kind == TokenKind::Word || schema.kind == TokenKind::QuotedName;
    if (!isName || !SameWord(schema.text, "dbo") || !cursor.AtOperator(".", 1) || !cursor.AtName(2)) return;
    cursor.Take();
    cursor.Take();
}

std::string ParseTableName(TokenCursor& cursor) {
    SkipSchema(cursor);
    // The lists of a server's tables, which only their schema tells from tables of that name.
    for (const std::string_view schema : {"sys", "INFORMATION_SCHEMA"}) {
        if (!cursor.At(schema) || !cursor.AtOperator(".", 1) || !cursor.AtName(2)) continue;
        cursor.Take();
        cursor.Take();
        return std::string(schema) + "." + cursor.TakeName("a table's name");
    }
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
