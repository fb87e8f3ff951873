// Operators, by precedence climbing: a chain of one level is read in a loop, so its length costs no stack.
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

/// Where the operators NOT, LIKE, BETWEEN, IN and IS begin after an operand: "x Not In (...)" begins with NOT.
bool AtPredicate(const TokenCursor& cursor) {
    const std::size_t skip = cursor.At("NOT") ? 1 : 0;
    return cursor.At("LIKE", skip) || cursor.At("ALIKE", skip) || cursor.At("BETWEEN", skip) || cursor.At("IN", skip) ||
           (skip == 0 && cursor.At("IS"));
}

ExpressionPtr ParseIn(TokenCursor& cursor, bool negated, ExpressionPtr operand, std::size_t at) {
    if (!cursor.AtOperator("(")) cursor.Fail("'(' after IN");
    if (cursor.AtQuery(1))
        return std::make_unique<InQuery>(negated, std::move(operand), ParseQueryInParentheses(cursor), at);
    cursor.Take();
    if (cursor.AtOperator(")")) cursor.Fail("a value or a query in the parentheses of IN");
    std::vector<ExpressionPtr> items = ParseExpressions(cursor);
    cursor.ExpectOperator(")");
    return std::make_unique<InList>(negated, std::move(operand), std::move(items), at);
}

ExpressionPtr ParsePredicate(TokenCursor& cursor, ExpressionPtr operand) {
    const std::size_t at = cursor.Peek().offset;
    constexpr Precedence kOperand = Tighter(Precedence::Comparison);
    if (cursor.Accept("IS")) {
        const bool negated = cursor.Accept("NOT");
        cursor.Expect("NULL");
        return std::make_unique<IsNull>(negated, std::move(operand), at);
    }
    const bool negated = cursor.Accept("NOT");
    if (cursor.Accept("IN")) return ParseIn(cursor, negated, std::move(operand), at);
    // ALIKE has the wildcards that LIKE has here anyway.
    if (cursor.Accept("LIKE") || cursor.Accept("ALIKE")) {
        ExpressionPtr pattern = ParseExpression(cursor, kOperand);
        ExpressionPtr escape = cursor.Accept("ESCAPE") ? ParseExpression(cursor, kOperand) : nullptr;
        return std::make_unique<Like>(negated, std::move(operand), std::move(pattern), std::move(escape), at);
    }
    cursor.Expect("BETWEEN");
    ExpressionPtr low = ParseExpression(cursor, kOperand);
    cursor.Expect("AND");
    ExpressionPtr high = ParseExpression(cursor, kOperand);
    return std::make_unique<Between>(negated, std::move(operand), std::move(low), std::move(high), at);
}

/// An operand with the NOT or the signs before it.
ExpressionPtr ParsePrefixed(TokenCursor& cursor, Precedence loosest) {
    TokenCursor::Nesting nesting(cursor);
    nesting.Deepen();
    const std::size_t at = cursor.Peek().offset;
    if (loosest <= Precedence::Not && cursor.Accept("NOT"))
        return std::make_unique<Unary>(UnaryOperator::Not, ParseExpression(cursor, Precedence::Not), at);
    const bool minus = cursor.AtOperator("-");
    if (!minus && !cursor.AtOperator("+")) return ParsePrimary(cursor);
    cursor.Take();
    const Precedence operand = loosest > Precedence::Sign ? loosest : Precedence::Sign;
    return std::make_unique<Unary>(minus ? UnaryOperator::Minus : UnaryOperator::Plus, ParseExpression(cursor, operand),
                                   at);
}

/// "= ANY (query)" is IN, "<> ALL (query)" is NOT IN.
ExpressionPtr ParseQuantified(TokenCursor& cursor, BinaryOperator op, ExpressionPtr operand, std::size_t at) {
    const bool all = cursor.At("ALL");
    const bool negated = all && op == BinaryOperator::NotEqual;
    cursor.Take();
    if (!negated && (all || op != BinaryOperator::Equal))
        return std::make_unique<Quantified>(op, all, std::move(operand), ParseQueryInParentheses(cursor), at);
    return std::make_unique<InQuery>(negated, std::move(operand), ParseQueryInParentheses(cursor), at);
}

bool AtQuantifier(const TokenCursor& cursor) {
    return (cursor.At("ANY") || cursor.At("SOME") || cursor.At("ALL")) && cursor.AtQuery(2);
}

}  // namespace

ExpressionPtr ParseExpression(TokenCursor& cursor, Precedence loosest) {
    TokenCursor::Nesting nesting(cursor);
    ExpressionPtr left = ParsePrefixed(cursor, loosest);
    for (bool chain = false;; chain = true) {
        if (loosest <= Precedence::Comparison && AtPredicate(cursor)) {
            nesting.Deepen();
            left = ParsePredicate(cursor, std::move(left));
            continue;
        }
        const OperatorInfo* info = FindOperator(cursor.Peek());
        if (!info || info->precedence < loosest) return left;
        if (chain) cursor.CountChained();
        const std::size_t at = cursor.Take().offset;
        if (info->precedence == Precedence::Comparison && AtQuantifier(cursor)) {
            nesting.Deepen();
            left = ParseQuantified(cursor, info->op, std::move(left), at);
            continue;
        }
        ExpressionPtr right = ParseExpression(cursor, Tighter(info->precedence));
        left = std::make_unique<Binary>(info->op, std::move(left), std::move(right), at);
    }
}

std::vector<ExpressionPtr> ParseExpressions(TokenCursor& cursor) {
    std::vector<ExpressionPtr> list;
    do list.push_back(ParseExpression(cursor));
    while (cursor.AcceptOperator(","));
    return list;
}

}  // namespace kpTables::sql::parse
