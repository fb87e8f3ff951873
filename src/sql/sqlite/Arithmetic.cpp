#include "sql/sqlite/Arithmetic.h"

#include <utility>

#include "sql/sqlite/Conversion.h"

namespace kpTables::sql {

namespace {

bool IsTextLiteral(const Term& term) {
    return term.literal && term.type == Type::Text && term.literal->literal == LiteralKind::Text;
}

// The text form of what stands beside &.
Term PartText(Session& session, Term term) {
    const bool asItIs = !term.literal && (term.type == Type::Short || term.type == Type::Long);
    return asItIs ? ValueTerm(session, std::move(term)) : TextTerm(session, std::move(term));
}

// The same, Null as an empty text.
Term PresentPartText(Session& session, Term term) {
    const bool present = term.present || (term.literal && term.type != Type::Date);
    term = PartText(session, std::move(term));
    return present ? term : FunctionTerm("COALESCE", {term, ConstantTerm("''", Type::Text)}, Type::Text);
}

// Null beside a text is an empty text, but two Nulls are Null: an operand that is never Null spares the question.
Term Concatenated(Session& session, Term left, Term right) {
    const bool present = left.present || left.literal || right.present || right.literal;
    if (!present) {
        left = PartText(session, std::move(left));
        return FunctionTerm("kp_join", {left, PartText(session, std::move(right))}, Type::Text);
    }
    left = PresentPartText(session, std::move(left));
    left = OperatorTerm(std::move(left), "||", PresentPartText(session, std::move(right)), Precedence::Concatenation,
                        Type::Text);
    left.present = true;
    return left;
}

// Whole numbers and Currency are kept as integers, so sums of them are exact.
bool IsExact(const Term& left, const Term& right) {
    const auto exact = [](Type type) { return IsWhole(type) || type == Type::Currency; };
    return exact(left.type) && exact(right.type);
}

Term ExactSum(Session& session, std::string_view op, Term left, Term right) {
    const bool currency = left.type == Type::Currency || right.type == Type::Currency;
    const Type type = currency ? Type::Currency : Type::Long;
    left = currency ? ConvertedTerm(session, std::move(left), type) : RealTerm(session, std::move(left));
    right = currency ? ConvertedTerm(session, std::move(right), type) : RealTerm(session, std::move(right));
    return OperatorTerm(std::move(left), op, right, Precedence::Additive, type);
}

Term DateSum(Session& session, BinaryOperator op, Term left, Term right) {
    if (left.type == Type::Date && right.type == Type::Date) {
        if (op == BinaryOperator::Add) RaiseMismatch(right);
        left = ValueTerm(session, std::move(left));
        return FunctionTerm("kp_date_diff", {left, ValueTerm(session, std::move(right))}, Type::Double);
    }
    if (right.type == Type::Date) {
        if (op == BinaryOperator::Subtract) RaiseMismatch(right);
        std::swap(left, right);
    }
    left = ValueTerm(session, std::move(left));
    right = RealTerm(session, std::move(right));
    if (op == BinaryOperator::Subtract) {
        right.text = "-" + Enclosed(right, Precedence::Primary);
        right.precedence = Precedence::Unary;
    }
    return FunctionTerm("kp_date_add", {left, right}, Type::Date);
}

Term Sum(Session& session, BinaryOperator op, Term left, Term right) {
    const std::string_view sign = op == BinaryOperator::Add ? "+" : "-";
    const auto text = [](const Term& term) { return term.type == Type::Text; };
    const auto joins = [&text](const Term& term) { return text(term) || term.type == Type::Null; };
    if (op == BinaryOperator::Add && joins(left) && joins(right) && (text(left) || text(right))) {
        left = TextTerm(session, std::move(left));
        return OperatorTerm(std::move(left), "||", TextTerm(session, std::move(right)), Precedence::Concatenation,
                            Type::Text);
    }
    if (left.type == Type::Date || right.type == Type::Date)
        return DateSum(session, op, std::move(left), std::move(right));
    if (IsExact(left, right)) return ExactSum(session, sign, std::move(left), std::move(right));
    left = RealTerm(session, std::move(left));
    return OperatorTerm(std::move(left), sign, RealTerm(session, std::move(right)), Precedence::Additive, Type::Double);
}

Term Product(Session& session, Term left, Term right) {
    if (!IsExact(left, right)) {
        left = RealTerm(session, std::move(left));
        return OperatorTerm(std::move(left), "*", RealTerm(session, std::move(right)), Precedence::Multiplicative,
                            Type::Double);
    }
    const bool currency = left.type == Type::Currency || right.type == Type::Currency;
    const bool both = left.type == Type::Currency && right.type == Type::Currency;
    left = ValueTerm(session, std::move(left));
    right = ValueTerm(session, std::move(right));
    if (both) return FunctionTerm("kp_cur_mul", {left, right}, Type::Currency);
    return OperatorTerm(std::move(left), "*", right, Precedence::Multiplicative,
                        currency ? Type::Currency : Type::Long);
}

Term ByFunction(Session& session, std::string_view name, Term left, Term right, Type type) {
    left = RealTerm(session, std::move(left));
    return FunctionTerm(name, {left, RealTerm(session, std::move(right))}, type);
}

void RequireNumber(const Term& term) {
    if (term.type == Type::Date) RaiseMismatch(term);
}

}  // namespace

Term ArithmeticTerm(Session& session, BinaryOperator op, Term left, Term right) {
    if (op == BinaryOperator::Concatenate) return Concatenated(session, std::move(left), std::move(right));
    if (op == BinaryOperator::Add || op == BinaryOperator::Subtract)
        return Sum(session, op, std::move(left), std::move(right));
    RequireNumber(left);
    RequireNumber(right);
    switch (op) {
        case BinaryOperator::Multiply:
            return Product(session, std::move(left), std::move(right));
        case BinaryOperator::Divide:
            return ByFunction(session, "kp_div", std::move(left), std::move(right), Type::Double);
        case BinaryOperator::IntegerDivide:
            return ByFunction(session, "kp_idiv", std::move(left), std::move(right), Type::Long);
        case BinaryOperator::Modulo:
            return ByFunction(session, "kp_mod", std::move(left), std::move(right), Type::Long);
        default:
            return ByFunction(session, "kp_pow", std::move(left), std::move(right), Type::Double);
    }
}

Term NegatedTerm(Session& session, Term operand) {
    RequireNumber(operand);
    const bool number = operand.literal && !IsTextLiteral(operand);
    if (number) {
        operand.negative = !operand.negative;
        return operand;
    }
    operand =
        operand.type == Type::Text ? RealTerm(session, std::move(operand)) : ValueTerm(session, std::move(operand));
    Type type = operand.type;
    if (type == Type::Boolean) type = Type::Long;
    Term term = operand;
    term.text = "-" + Enclosed(operand, Precedence::Primary);
    term.type = type;
    term.precedence = Precedence::Unary;
    term.column = false;
    term.truth.reset();
    return term;
}

}  // namespace kpTables::sql
