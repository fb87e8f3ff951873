// Access's domain functions: their arguments are texts with an expression, a table's name and a condition.
#include <array>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/parse/Keywords.h"
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

struct DomainFunction {
    std::string_view name;
    std::string_view aggregate;  ///< "" for the value of the first row
};

constexpr std::array<DomainFunction, 12> kDomainFunctions = {{
    {"DLOOKUP", ""},
    {"DCOUNT", "Count"},
    {"DSUM", "Sum"},
    {"DAVG", "Avg"},
    {"DMIN", "Min"},
    {"DMAX", "Max"},
    {"DFIRST", "First"},
    {"DLAST", "Last"},
    {"DSTDEV", "StDev"},
    {"DSTDEVP", "StDevP"},
    {"DVAR", "Var"},
    {"DVARP", "VarP"},
}};

const DomainFunction* FindDomainFunction(std::string_view name) {
    for (const DomainFunction& function : kDomainFunctions)
        if (SameWord(function.name, name)) return &function;
    return nullptr;
}

/// An argument: a text in which values of the query around it may be joined.
struct DomainText {
    const Token* token = nullptr;
    std::string text;
    std::vector<ExpressionPtr> values;
};

/// Lets another text be read at the place of a literal; an error names both places.
template <class Parse>
auto ParseInside(TokenCursor& cursor, DomainText& given, Parse parse) {
    try {
        TokenCursor inner(given.text, {}, cursor.TextDialect());
        inner.MakeInner(cursor, given.token->offset + 1, std::move(given.values));
        auto parsed = parse(inner);
        if (!inner.AtEnd()) inner.Fail("the text's end");
        if (!inner.AreReplaced()) inner.FailAt(inner.Peek(), Message("a text is joined inside of quotes"));
        return parsed;
    } catch (const SqlError& error) {
        cursor.FailAt(*given.token, Message("inside of the text: {1}", error.what()));
    }
}

/// The name of a table other than the domain's must qualify a value: the names of the domain come first in its
/// condition.
void CheckValue(const TokenCursor& cursor, const Token& at, const Expression& value, const std::string& domain) {
    const auto* column = If<Column>(&value);
    if (!column) cursor.FailUnsupported(at, Message("a value in a domain function's condition that is no column"));
    if (column->table.empty() || SameName(column->table, domain))
        cursor.FailUnsupported(at, Message("a column in a domain function's condition without its table's alias"));
}

/// "text" & column & "text".
DomainText ParseJoinedText(TokenCursor& cursor, const std::string& domain) {
    DomainText joined;
    joined.token = &cursor.Peek();
    do {
        const Token& part = cursor.Peek();
        if (part.kind == TokenKind::Literal && part.literal == LiteralKind::Text) {
            const std::string& text = cursor.ValueOf(part).text;
            if (text.find("@@") != text.npos)
                cursor.FailUnsupported(part, Message("@@ in a domain function's condition"));
            cursor.FixLiteral(part);
            joined.text += text;
            cursor.Take();
            continue;
        }
        if (!cursor.AtName()) cursor.Fail("a text in quotes");
        ExpressionPtr value = ParsePrimary(cursor);
        CheckValue(cursor, part, *value, domain);
        joined.text += " @@_" + std::to_string(joined.values.size()) + " ";
        joined.values.push_back(std::move(value));
    } while (cursor.AcceptOperator("&") || cursor.AcceptOperator("+"));
    return joined;
}

DomainText ParseText(TokenCursor& cursor) {
    const Token& token = cursor.Peek();
    if (token.kind != TokenKind::Literal || token.literal != LiteralKind::Text) cursor.Fail("a text in quotes");
    cursor.FixLiteral(token);
    DomainText given{&token, cursor.ValueOf(token).text, {}};
    cursor.Take();
    return given;
}

SelectItem ItemOf(TokenCursor& cursor, const DomainFunction& function) {
    const std::size_t at = cursor.Peek().offset;
    ExpressionPtr value;
    if (cursor.AcceptOperator("*"))
        value = std::make_unique<Star>("", at);
    else
        value = ParseExpression(cursor);
    if (function.aggregate.empty()) return {std::move(value), {}};
    std::vector<ExpressionPtr> arguments;
    arguments.push_back(std::move(value));
    return {std::make_unique<Call>(std::string(function.aggregate), false, std::move(arguments), at), {}};
}

}  // namespace

bool IsDomainFunction(std::string_view name) {
    return !name.empty() && (name.front() | 0x20) == 'd' && FindDomainFunction(name);
}

ExpressionPtr ParseDomainFunction(TokenCursor& cursor) {
    // As deep as the query that it means.
    TokenCursor::Nesting nesting(cursor);
    nesting.Deepen();
    nesting.Deepen();
    const Token& name = cursor.Take();
    const DomainFunction& function = *FindDomainFunction(name.text);
    cursor.ExpectOperator("(");
    DomainText item = ParseText(cursor);
    cursor.ExpectOperator(",");
    DomainText domain = ParseText(cursor);
    auto core = std::make_unique<SelectCore>();
    const std::size_t tableAt = domain.token->offset + 1;
    std::string table = ParseInside(cursor, domain, [](TokenCursor& inner) { return ParseTableName(inner); });
    core->items.push_back(ParseInside(cursor, item, [&](TokenCursor& inner) { return ItemOf(inner, function); }));
    if (cursor.AcceptOperator(",")) {
        DomainText condition = ParseJoinedText(cursor, table);
        if (condition.text.find_first_not_of(' ') != condition.text.npos)
            core->where = ParseInside(cursor, condition, [](TokenCursor& inner) { return ParseExpression(inner); });
    }
    cursor.ExpectOperator(")");
    core->from.push_back(std::make_unique<NamedTable>(std::move(table), std::string(), tableAt));
    if (function.aggregate.empty()) core->top = std::make_unique<Literal>(LiteralKind::Integer, "1", -1, name.offset);
    auto query = std::make_unique<Query>();
    query->offset = name.offset;
    Query::Member member;
    member.core = std::move(core);
    query->members.push_back(std::move(member));
    return std::make_unique<Subquery>(std::move(query), name.offset);
}

}  // namespace kpTables::sql::parse
