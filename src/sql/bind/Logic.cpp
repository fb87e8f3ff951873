#include <utility>

#include "kpTables/text/Message.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/Operators.h"

namespace kpTables::sql::bind {

namespace {

// On numbers And, Or and Not are bitwise in Jet; here they are needed for conditions only.
TermPtr Condition(Context& context, TermPtr term) {
    term = AsCondition(context, std::move(term));
    if (term->type != Type::Boolean && term->type != Type::Null && term->type != Type::Unknown)
        RaiseMismatch(*term, Message("a condition is expected"));
    return term;
}

}  // namespace

TermPtr JoinConditions(Context& context, BinaryOperator op, Terms terms) {
    const bool neutral = op == BinaryOperator::And;
    const std::size_t offset = terms.front()->offset;
    Terms conditions;
    for (TermPtr& term : terms) {
        TermPtr condition = Condition(context, std::move(term));
        const auto* known = KnownTruth(*condition);
        if (!known || IsTrue(*known) != neutral) conditions.push_back(std::move(condition));
    }
    if (conditions.empty()) return TruthConstant(neutral, offset);
    if (conditions.size() == 1) return std::move(conditions.front());
    return std::make_shared<Logic>(neutral ? LogicOperator::And : LogicOperator::Or, std::move(conditions));
}

namespace {

bool IsNumber(const Term& term) { return IsNumeric(term.type) && term.type != Type::Boolean; }

TermPtr Complement(TermPtr bits) {
    return std::make_shared<Arithmetic>(ArithmeticOperator::Subtract, NumberConstant("-1", Type::Long), std::move(bits),
                                        Type::Long);
}

// On numbers these operators are bitwise, as in Jet.
TermPtr OfBits(Context& context, BinaryOperator op, TermPtr left, TermPtr right) {
    left = AsNumber(context, std::move(left));
    right = AsNumber(context, std::move(right));
    if (op == BinaryOperator::Imp) return Call("bit_imp", {std::move(left), std::move(right)}, Type::Long);
    TermPtr different = Call("bit_xor", {std::move(left), std::move(right)}, Type::Long);
    return op == BinaryOperator::Xor ? different : Complement(std::move(different));
}

}  // namespace

TermPtr BindLogic(Context& context, BinaryOperator op, TermPtr left, TermPtr right) {
    if (IsNumber(*left) || IsNumber(*right)) return OfBits(context, op, std::move(left), std::move(right));
    if (op == BinaryOperator::Imp) {
        left = BindNot(context, std::move(left));
        return JoinConditions(context, BinaryOperator::Or, {std::move(left), std::move(right)});
    }
    left = AsValue(context, Condition(context, std::move(left)));
    right = AsValue(context, Condition(context, std::move(right)));
    const auto comparison = op == BinaryOperator::Xor ? ComparisonOperator::NotEqual : ComparisonOperator::Equal;
    return Compare(comparison, std::move(left), std::move(right));
}

TermPtr BindNot(Context& context, TermPtr operand) {
    operand = Condition(context, std::move(operand));
    if (const auto* known = KnownTruth(*operand)) return TruthConstant(!IsTrue(*known), operand->offset);
    return std::make_shared<NotTerm>(std::move(operand));
}

TermPtr BindIsNull(Context& context, TermPtr operand, bool negated) {
    operand = AsValue(context, std::move(operand));
    return Compare(negated ? ComparisonOperator::Different : ComparisonOperator::Same, std::move(operand),
                   NullConstant());
}

}  // namespace kpTables::sql::bind
