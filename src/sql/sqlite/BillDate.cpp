#include "sql/sqlite/BillDate.h"

#include "sql/sqlite/Names.h"

namespace kpTables::sql {

namespace {

// What the year, the month and the day are wrapped in, and what joins them.
struct Spelling {
    BinaryOperator join;
    bool cast;
};

const Column* PartOf(const Expression& expression, const Spelling& spelling) {
    if (!spelling.cast) return If<Column>(&expression);
    const auto* cast = If<Cast>(&expression);
    return cast && cast->type.type == Type::Text ? If<Column>(cast->operand.get()) : nullptr;
}

const Literal* SeparatorOf(const Expression& expression) {
    const auto* literal = If<Literal>(&expression);
    const bool separates =
        literal && literal->literal == LiteralKind::Text && (literal->text == "-" || literal->text == "/");
    return separates ? literal : nullptr;
}

std::optional<BillDate> MatchJoined(const Expression& text, const Spelling& spelling) {
    // ((((y & '-') & m) & '-') & d): from the right, the operands are d, '-', m, '-' and what is left is y.
    constexpr int kJoins = 4;
    const Expression* operands[kJoins + 1];
    const Expression* rest = &text;
    for (int i = kJoins; i > 0; --i) {
        const auto* join = If<Binary>(rest);
        if (!join || join->op != spelling.join) return std::nullopt;
        operands[i] = join->right.get();
        rest = join->left.get();
    }
    operands[0] = rest;
    const BillDate date{PartOf(*operands[0], spelling), PartOf(*operands[2], spelling), PartOf(*operands[4], spelling),
                        SeparatorOf(*operands[1]), SeparatorOf(*operands[3])};
    const bool complete = date.year && date.month && date.day && date.firstSeparator && date.secondSeparator;
    return complete ? std::optional(date) : std::nullopt;
}

}  // namespace

std::optional<BillDate> MatchBillDate(const Expression& expression) {
    if (const auto* cast = If<Cast>(&expression); cast && cast->type.type == Type::Date)
        return MatchJoined(*cast->operand, {BinaryOperator::Add, true});
    const auto* call = If<Call>(&expression);
    if (call && call->arguments.size() == 1 && SameName(call->name, "CDATE"))
        return MatchJoined(*call->arguments.front(), {BinaryOperator::Concatenate, false});
    return std::nullopt;
}

}  // namespace kpTables::sql
