// Operands: constants, columns, calls, casts, cases and anything in parentheses.
#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/parse/Keywords.h"
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

/// LEFT and RIGHT are functions, too; no other reserved word can be called.
bool AtCall(const TokenCursor& cursor) {
    if (cursor.Peek().kind != TokenKind::Word || !cursor.AtOperator("(", 1)) return false;
    return cursor.AtName() || cursor.At("LEFT") || cursor.At("RIGHT");
}

ExpressionPtr ParseLiteral(TokenCursor& cursor) {
    const Token& token = cursor.Take();
    return std::make_unique<Literal>(token.literal, cursor.ValueOf(token).text, cursor.OrdinalOf(token), token.offset);
}

/// True, On, False and Null have no ordinal: they belong to the statement's shape.
ExpressionPtr ParseNamedConstant(TokenCursor& cursor) {
    const std::size_t at = cursor.Peek().offset;
    if (cursor.Accept("NULL")) return std::make_unique<Literal>(LiteralKind::Null, "", -1, at);
    if (cursor.Accept("TRUE") || cursor.Accept("ON"))
        return std::make_unique<Literal>(LiteralKind::Boolean, "True", -1, at);
    cursor.Expect("FALSE");
    return std::make_unique<Literal>(LiteralKind::Boolean, "False", -1, at);
}

ExpressionPtr ParseColumn(TokenCursor& cursor) {
    const std::size_t at = cursor.Peek().offset;
    if (cursor.AtOperator(".", 3)) SkipSchema(cursor);
    std::string name = cursor.TakeName("an expression");
    if (!cursor.AcceptOperator(".") && !cursor.AcceptOperator("!"))
        return std::make_unique<Column>("", std::move(name), at);
    std::string column = cursor.TakeName("a column's name after the point");
    return std::make_unique<Column>(std::move(name), std::move(column), at);
}

ExpressionPtr ParseCall(TokenCursor& cursor) {
    const Token& name = cursor.Take();
    cursor.ExpectOperator("(");
    std::vector<ExpressionPtr> arguments;
    const bool distinct = cursor.Accept("DISTINCT");
    if (!distinct && cursor.AtOperator("*")) {
        arguments.push_back(std::make_unique<Star>("", cursor.Take().offset));
    } else if (distinct || !cursor.AtOperator(")")) {
        cursor.Accept("ALL");
        arguments = ParseExpressions(cursor);
    }
    cursor.ExpectOperator(")");
    auto call = std::make_unique<Call>(std::string(name.text), distinct, std::move(arguments), name.offset);
    if (cursor.At("OVER") && cursor.AtOperator("(", 1)) return ParseWindow(cursor, std::move(call));
    return call;
}

ExpressionPtr ParseCast(TokenCursor& cursor) {
    const bool tries = cursor.At("TRY_CAST");
    const std::size_t at = cursor.Take().offset;
    cursor.ExpectOperator("(");
    ExpressionPtr operand = ParseExpression(cursor);
    cursor.Expect("AS");
    const TypeName type = ParseTypeName(cursor, TypeUse::Cast);
    cursor.ExpectOperator(")");
    auto cast = std::make_unique<Cast>(std::move(operand), type, nullptr, at);
    cast->tries = tries;
    return cast;
}

/// CONVERT(type, operand[, style]).
ExpressionPtr ParseConvert(TokenCursor& cursor) {
    const bool tries = cursor.At("TRY_CONVERT");
    const std::size_t at = cursor.Take().offset;
    cursor.ExpectOperator("(");
    const TypeName type = ParseTypeName(cursor, TypeUse::Cast);
    cursor.ExpectOperator(",");
    ExpressionPtr operand = ParseExpression(cursor);
    ExpressionPtr style = cursor.AcceptOperator(",") ? ParseExpression(cursor) : nullptr;
    cursor.ExpectOperator(")");
    auto cast = std::make_unique<Cast>(std::move(operand), type, std::move(style), at);
    cast->tries = tries;
    return cast;
}

ExpressionPtr ParseCase(TokenCursor& cursor) {
    auto node = std::make_unique<Case>(cursor.Take().offset);
    if (!cursor.At("WHEN")) node->operand = ParseExpression(cursor);
    if (!cursor.At("WHEN")) cursor.Fail("WHEN");
    while (cursor.Accept("WHEN")) {
        Case::When when;
        when.condition = ParseExpression(cursor);
        cursor.Expect("THEN");
        when.result = ParseExpression(cursor);
        node->whens.push_back(std::move(when));
    }
    if (cursor.Accept("ELSE")) node->otherwise = ParseExpression(cursor);
    if (!cursor.Accept("END")) cursor.Fail("WHEN, ELSE or END");
    return node;
}

ExpressionPtr ParseParenthesised(TokenCursor& cursor) {
    const std::size_t at = cursor.Peek().offset;
    if (cursor.AtQuery(1)) return std::make_unique<Subquery>(ParseQueryInParentheses(cursor), at);
    cursor.Take();
    ExpressionPtr inner = ParseExpression(cursor);
    cursor.ExpectOperator(")");
    return inner;
}

ExpressionPtr ParseExists(TokenCursor& cursor) {
    const std::size_t at = cursor.Take().offset;
    if (!cursor.AtQuery(1)) cursor.Fail("a query in the parentheses of EXISTS");
    return std::make_unique<Exists>(ParseQueryInParentheses(cursor), at);
}

ExpressionPtr ParseOperand(TokenCursor& cursor) {
    const Token& token = cursor.Peek();
    if (token.kind == TokenKind::Literal) return ParseLiteral(cursor);
    if (token.kind == TokenKind::Variable) {
        cursor.Take();
        if (ExpressionPtr replaced = cursor.TakeReplacement(token)) return replaced;
        return std::make_unique<Variable>(std::string(token.text.substr(2)), token.offset);
    }
    if (cursor.AtOperator("(")) return ParseParenthesised(cursor);
    const bool on = cursor.At("ON") && cursor.TextDialect() == Dialect::Jet;
    if (on || cursor.At("NULL") || cursor.At("TRUE") || cursor.At("FALSE")) return ParseNamedConstant(cursor);
    if (cursor.At("CASE")) return ParseCase(cursor);
    if (AtCall(cursor)) {
        if (cursor.At("CAST") || cursor.At("TRY_CAST")) return ParseCast(cursor);
        if (cursor.At("CONVERT") || cursor.At("TRY_CONVERT")) return ParseConvert(cursor);
        if (cursor.At("TRY_PARSE")) cursor.FailUnsupported(cursor.Peek(), "TRY_PARSE");
        if (IsDomainFunction(cursor.Peek().text)) return ParseDomainFunction(cursor);
        if (cursor.At("EXISTS")) return ParseExists(cursor);
        return ParseCall(cursor);
    }
    return ParseColumn(cursor);
}

}  // namespace

ExpressionPtr ParsePrimary(TokenCursor& cursor) {
    ExpressionPtr operand = ParseOperand(cursor);
    SkipCollation(cursor);
    return operand;
}

void SkipCollation(TokenCursor& cursor) {
    while (cursor.At("COLLATE") && cursor.Peek(1).kind == TokenKind::Word) {
        const Token& name = cursor.Peek(1);
        const std::string folded = FoldedName(name.text);
        const bool isOwn = folded.ends_with("_ci_as") || folded == "database_default";
        if (!isOwn && folded.find('_') == folded.npos) return;  // a column's or an alias's name
        if (!isOwn)
            cursor.FailUnsupported(name, Message("COLLATE {1}: a book has one order of texts, _CI_AS; it", name.text));
        cursor.Take();
        cursor.Take();
    }
}

}  // namespace kpTables::sql::parse
