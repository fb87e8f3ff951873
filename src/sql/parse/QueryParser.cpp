// SELECT and UNION.
#include "kpTables/text/Message.h"
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

ExpressionPtr ParseCount(TokenCursor& cursor, bool mayBeBroken, const char* what) {
    const Token& count = cursor.Peek();
    const bool isNumber = count.kind == TokenKind::Literal && (count.literal == LiteralKind::Integer ||
                                                               (mayBeBroken && count.literal == LiteralKind::Decimal));
    // A parameter's value may be negative.
    if (!isNumber || cursor.ValueOf(count).text.starts_with('-')) cursor.Fail(what);
    cursor.Take();
    return std::make_unique<Literal>(count.literal, cursor.ValueOf(count).text, cursor.OrdinalOf(count), count.offset);
}

namespace {

void ParseTop(TokenCursor& cursor, SelectCore& core) {
    const bool enclosed = cursor.AtOperator("(", 1);
    if (!cursor.At("TOP") || cursor.Peek(enclosed ? 2 : 1).kind != TokenKind::Literal) return;
    if (enclosed && !cursor.AtOperator(")", 3)) return;
    cursor.Take();
    if (enclosed) cursor.Take();
    core.percent = cursor.At("PERCENT", enclosed ? 2 : 1);
    core.top = ParseCount(cursor, core.percent, "a whole number after TOP");
    if (enclosed) cursor.ExpectOperator(")");
    if (core.percent) cursor.Take();
    if (!cursor.At("WITH") || !cursor.At("TIES", 1)) return;
    if (core.percent || core.distinct)
        cursor.FailUnsupported(cursor.Peek(), Message("WITH TIES beside DISTINCT or PERCENT"));
    core.withTies = true;
    cursor.Take();
    cursor.Take();
}

void ParseGroupBy(TokenCursor& cursor, SelectCore& core) {
    if (cursor.Accept("GROUP")) {
        cursor.Expect("BY");
        for (const std::string_view word : {"ROLLUP", "CUBE", "GROUPING"})
            if (cursor.At(word) && (cursor.AtOperator("(", 1) || cursor.At("SETS", 1)))
                cursor.FailUnsupported(cursor.Peek(), Message("GROUP BY {1}: use a query for each level; it", word));
        core.groupBy = ParseExpressions(cursor);
        if (cursor.At("WITH") && (cursor.At("ROLLUP", 1) || cursor.At("CUBE", 1)))
            cursor.FailUnsupported(cursor.Peek(), Message("GROUP BY {1}: use a query for each level; it",
                                                          "WITH " + std::string(cursor.Peek(1).text)));
    }
    if (cursor.Accept("HAVING")) core.having = ParseExpression(cursor);
}

std::unique_ptr<SelectCore> ParseCore(TokenCursor& cursor) {
    auto core = std::make_unique<SelectCore>();
    cursor.Expect("SELECT");
    const bool mayMakeTable = cursor.TakeNewTableAllowed();
    core->distinct = cursor.Accept("DISTINCT");
    const bool distinctRow = !core->distinct && cursor.Accept("DISTINCTROW");
    if (!core->distinct && !distinctRow) cursor.Accept("ALL");
    ParseTop(cursor, *core);
    do core->items.push_back(ParseSelectItem(cursor));
    while (cursor.AcceptOperator(","));
    if (mayMakeTable && cursor.Accept("INTO")) {
        const std::size_t at = cursor.Peek().offset;
        cursor.MakeTable({ParseTableName(cursor), at});
    }
    if (cursor.Accept("FROM")) core->from = ParseTables(cursor);
    // Of a single table DISTINCTROW removes no rows.
    core->distinctRow =
        distinctRow && (core->from.size() > 1 || (!core->from.empty() && core->from.front()->kind == TableKind::Join));
    if (cursor.Accept("WHERE")) core->where = ParseExpression(cursor);
    ParseGroupBy(cursor, *core);
    return core;
}

/// "OFFSET n ROWS [FETCH NEXT m ROWS ONLY]", which follows an ORDER BY.
void ParseOffset(TokenCursor& cursor, Query& query) {
    if (query.orderBy.empty() || !cursor.Accept("OFFSET")) return;
    const auto rows = [&] {
        if (!cursor.Accept("ROWS") && !cursor.Accept("ROW")) cursor.Fail("ROWS");
    };
    query.skip = ParseCount(cursor, false, "a whole number after OFFSET");
    rows();
    if (!cursor.Accept("FETCH")) return;
    if (!cursor.Accept("NEXT") && !cursor.Accept("FIRST")) cursor.Fail("NEXT");
    query.fetch = ParseCount(cursor, false, "a whole number after FETCH NEXT");
    rows();
    cursor.Expect("ONLY");
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

/// The member wrapped in a query of its own, to which others may be joined.
Query::Member Nested(Query::Member member, std::size_t at) {
    Query::Member outer;
    outer.operation = member.operation;
    outer.nested = std::make_unique<Query>();
    outer.nested->offset = at;
    member.operation = SetOperation::Union;
    outer.nested->members.push_back(std::move(member));
    return outer;
}

/// Takes the word between two members; false when there is none here.
bool AcceptSetOperation(TokenCursor& cursor, SetOperation& operation) {
    if (cursor.Accept("UNION")) {
        operation = cursor.Accept("ALL") ? SetOperation::UnionAll : SetOperation::Union;
        return true;
    }
    const bool intersects = cursor.At("INTERSECT");
    if (!intersects && !cursor.At("EXCEPT")) return false;
    operation = intersects ? SetOperation::Intersect : SetOperation::Except;
    cursor.Take();
    if (cursor.At("ALL")) cursor.FailUnsupported(cursor.Peek(), intersects ? "INTERSECT ALL" : "EXCEPT ALL");
    return true;
}

/// A member and the word behind it. With an ORDER BY that does not end the chain it becomes a query of its own; the
/// order that does is the whole query's.
Query::Member ParseLink(TokenCursor& cursor, SetOperation& operation, bool& goesOn, Query& whole) {
    const std::size_t at = cursor.Peek().offset;
    Query::Member member = ParseMember(cursor);
    member.operation = operation;
    std::vector<OrderItem> order = ParseOrderBy(cursor);
    goesOn = AcceptSetOperation(cursor, operation);
    if (!goesOn) {
        whole.orderBy = std::move(order);
    } else if (!order.empty()) {
        member = Nested(std::move(member), at);
        member.nested->orderBy = std::move(order);
    }
    return member;
}

}  // namespace

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

std::unique_ptr<Query> ParseQuery(TokenCursor& cursor) {
    TokenCursor::Nesting nesting(cursor);
    nesting.Deepen();
    auto query = std::make_unique<Query>();
    query->offset = cursor.Peek().offset;
    SetOperation operation = SetOperation::Union;
    for (bool goesOn = true; goesOn;) {
        const std::size_t at = cursor.Peek().offset;
        query->members.push_back(ParseLink(cursor, operation, goesOn, *query));
        // INTERSECT binds tighter than what joins the member in front of it.
        const bool groups = query->members.size() > 1 && query->members.back().operation != SetOperation::Intersect;
        if (!groups || !goesOn || operation != SetOperation::Intersect) continue;
        Query::Member& group = query->members.back() = Nested(std::move(query->members.back()), at);
        while (goesOn && operation == SetOperation::Intersect)
            group.nested->members.push_back(ParseLink(cursor, operation, goesOn, *query));
    }
    ParseOffset(cursor, *query);
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
    if (cursor.AtOperator(".", 3) && cursor.AtOperator("*", 4)) {
        SkipSchema(cursor);
        if (&cursor.Peek() != &first) return ParseSelectItem(cursor);
    }
    item.expression = ParseExpression(cursor);
    item.alias = ParseAlias(cursor);
    return item;
}

namespace {

/// Where a word that may be a name begins what follows a select item or a table.
bool AtClause(const TokenCursor& cursor) {
    if (cursor.Peek().kind != TokenKind::Word) return false;
    if (cursor.At("INTERSECT") || cursor.At("EXCEPT"))
        return cursor.At("SELECT", 1) || cursor.AtOperator("(", 1) || cursor.At("ALL", 1);
    if (cursor.At("CROSS") || cursor.At("FULL") || cursor.At("OUTER"))
        return cursor.At("JOIN", 1) || cursor.At("OUTER", 1) || cursor.At("APPLY", 1);
    return cursor.At("WITH") && cursor.AtOperator("(", 1);
}

}  // namespace

std::string ParseAlias(TokenCursor& cursor) {
    if (cursor.Accept("AS")) return cursor.TakeName("a name after AS");
    return cursor.AtName() && !AtClause(cursor) ? std::string(cursor.Take().text) : std::string();
}

}  // namespace kpTables::sql::parse
