// SELECT and UNION.
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

ExpressionPtr ParseTop(TokenCursor& cursor) {
    if (!cursor.At("TOP") || cursor.Peek(1).kind != TokenKind::Literal) return nullptr;
    cursor.Take();
    const Token& count = cursor.Peek();
    const bool isNegative = cursor.ValueOf(count).text.starts_with('-');  // a parameter's value may be
    if (count.literal != LiteralKind::Integer || isNegative) cursor.Fail("a whole number after TOP");
    cursor.Take();
    if (cursor.At("PERCENT")) cursor.FailUnsupported(cursor.Peek(), "TOP ... PERCENT");
    return std::make_unique<Literal>(count.literal, cursor.ValueOf(count).text, count.ordinal, count.offset);
}

/// DISTINCTROW removes no rows of a single table; over several it would need row identity.
void CheckDistinctRow(const TokenCursor& cursor, const Token& word, const SelectCore& core) {
    if (core.from.size() > 1 || (core.from.size() == 1 && core.from.front()->kind == TableKind::Join))
        cursor.FailUnsupported(word, "DISTINCTROW over several tables");
}

void ParseGroupBy(TokenCursor& cursor, SelectCore& core) {
    if (cursor.Accept("GROUP")) {
        cursor.Expect("BY");
        core.groupBy = ParseExpressions(cursor);
    }
    if (cursor.Accept("HAVING")) core.having = ParseExpression(cursor);
}

std::unique_ptr<SelectCore> ParseCore(TokenCursor& cursor) {
    auto core = std::make_unique<SelectCore>();
    cursor.Expect("SELECT");
    const Token& word = cursor.Peek();
    core->distinct = cursor.Accept("DISTINCT");
    const bool distinctRow = !core->distinct && cursor.Accept("DISTINCTROW");
    if (!core->distinct && !distinctRow) cursor.Accept("ALL");
    core->top = ParseTop(cursor);
    do core->items.push_back(ParseSelectItem(cursor));
    while (cursor.AcceptOperator(","));
    if (cursor.Accept("FROM")) {
        do core->from.push_back(ParseTable(cursor));
        while (cursor.AcceptOperator(","));
    }
    if (distinctRow) CheckDistinctRow(cursor, word, *core);
    if (cursor.Accept("WHERE")) core->where = ParseExpression(cursor);
    ParseGroupBy(cursor, *core);
    return core;
}

std::vector<OrderItem> ParseOrderBy(TokenCursor& cursor) {
    std::vector<OrderItem> order;
    if (!cursor.Accept("ORDER")) return order;
    cursor.Expect("BY");
    do {
        OrderItem item;
        item.expression = ParseExpression(cursor);
        item.descending = cursor.Accept("DESC");
        if (!item.descending) cursor.Accept("ASC");
        order.push_back(std::move(item));
    } while (cursor.AcceptOperator(","));
    return order;
}

/// One member of a chain. Parentheses around a bare SELECT add nothing and are dropped.
Query::Member ParseMember(TokenCursor& cursor) {
    Query::Member member;
    if (!cursor.AtOperator("(")) {
        member.core = ParseCore(cursor);
        return member;
    }
    std::unique_ptr<Query> inner = ParseQueryInParentheses(cursor);
    if (inner->members.size() == 1 && inner->members.front().core && inner->orderBy.empty())
        member.core = std::move(inner->members.front().core);
    else
        member.nested = std::move(inner);
    return member;
}

/// A member with an ORDER BY that does not end the chain becomes a query of its own.
Query::Member WithOrder(Query::Member member, std::vector<OrderItem> order, std::size_t at) {
    Query::Member outer;
    outer.all = member.all;
    outer.nested = std::make_unique<Query>();
    outer.nested->offset = at;
    outer.nested->orderBy = std::move(order);
    member.all = false;
    outer.nested->members.push_back(std::move(member));
    return outer;
}

}  // namespace

std::unique_ptr<Query> ParseQuery(TokenCursor& cursor) {
    TokenCursor::Nesting nesting(cursor);
    nesting.Deepen();
    auto query = std::make_unique<Query>();
    query->offset = cursor.Peek().offset;
    bool all = false;
    for (;;) {
        const std::size_t at = cursor.Peek().offset;
        Query::Member member = ParseMember(cursor);
        member.all = all;
        std::vector<OrderItem> order = ParseOrderBy(cursor);
        const bool goesOn = cursor.Accept("UNION");
        if (goesOn && !order.empty()) {
            query->members.push_back(WithOrder(std::move(member), std::move(order), at));
        } else {
            query->members.push_back(std::move(member));
            query->orderBy = std::move(order);
        }
        if (!goesOn) break;
        all = cursor.Accept("ALL");
    }
    if (query->members.size() == 1 && query->members.front().nested && query->orderBy.empty())
        return std::move(query->members.front().nested);
    return query;
}

std::unique_ptr<Query> ParseQueryInParentheses(TokenCursor& cursor) {
    cursor.ExpectOperator("(");
    std::unique_ptr<Query> query = ParseQuery(cursor);
    cursor.ExpectOperator(")");
    return query;
}

SelectItem ParseSelectItem(TokenCursor& cursor) {
    SelectItem item;
    const Token& first = cursor.Peek();
    if (cursor.AcceptOperator("*")) {
        item.expression = std::make_unique<Star>("", first.offset);
        return item;
    }
    if (cursor.AtName() && cursor.AtOperator(".", 1) && cursor.AtOperator("*", 2)) {
        for (int i = 0; i < 3; ++i) cursor.Take();
        item.expression = std::make_unique<Star>(std::string(first.text), first.offset);
        return item;
    }
    item.expression = ParseExpression(cursor);
    item.alias = ParseAlias(cursor);
    return item;
}

std::string ParseAlias(TokenCursor& cursor) {
    if (cursor.Accept("AS")) return cursor.TakeName("a name after AS");
    return cursor.AtName() ? std::string(cursor.Take().text) : std::string();
}

}  // namespace kpTables::sql::parse
