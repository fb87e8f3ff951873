#include <utility>

#include "sql/bind/Conversions.h"
#include "sql/bind/Operators.h"

namespace kpTables::sql::bind {

namespace {

using Nulls = Concatenation::Nulls;

bool IsLiteral(const Term& term) { return term.kind == TermKind::Literal; }

TermPtr ArithmeticOf(ArithmeticOperator op, TermPtr left, TermPtr right, Type type) {
    return std::make_shared<Arithmetic>(op, std::move(left), std::move(right), type);
}

// An operand of &: a whole number is joined as it is.
TermPtr Part(Context& context, TermPtr term) {
    const bool asItIs = !IsLiteral(*term) && (term->type == Type::Short || term->type == Type::Long);
    return asItIs ? AsValue(context, std::move(term)) : AsText(context, std::move(term));
}

bool IsJoined(const Term& term) {
    const auto* joined = If<Concatenation>(&term);
    return joined && joined->nulls == Nulls::AsEmpty;
}

// A Null joined to a text is an empty text, two Nulls are Null: no check is needed if an operand is never Null.
TermPtr Concatenated(Context& context, TermPtr left, TermPtr right) {
    const auto decides = [](const Term& term) { return IsJoined(term) || IsLiteral(term); };
    const auto mayBeNull = [](const Term& term) {
        return !IsJoined(term) && !(IsLiteral(term) && term.type != Type::Date);
    };
    const bool never = decides(*left) || decides(*right);
    const bool leftMayBeNull = mayBeNull(*left);
    const bool rightMayBeNull = mayBeNull(*right);
    left = Part(context, std::move(left));
    auto joined = std::make_shared<Concatenation>(never ? Nulls::AsEmpty : Nulls::Join, std::move(left),
                                                  Part(context, std::move(right)));
    joined->leftMayBeNull = leftMayBeNull;
    joined->rightMayBeNull = rightMayBeNull;
    return joined;
}

// Whole numbers and Currency are kept as integers, so sums of them are exact.
bool AreExact(const Term& left, const Term& right) {
    const auto exact = [](Type type) { return IsWhole(type) || type == Type::Currency; };
    return exact(left.type) && exact(right.type);
}

TermPtr ExactSum(Context& context, ArithmeticOperator op, TermPtr left, TermPtr right) {
    const bool currency = left->type == Type::Currency || right->type == Type::Currency;
    const Type type = currency ? Type::Currency : Type::Long;
    left = currency ? Converted(context, std::move(left), type) : AsNumber(context, std::move(left));
    right = currency ? Converted(context, std::move(right), type) : AsNumber(context, std::move(right));
    return ArithmeticOf(op, std::move(left), std::move(right), type);
}

TermPtr DateSum(Context& context, BinaryOperator op, TermPtr left, TermPtr right) {
    if (left->type == Type::Date && right->type == Type::Date) {
        if (op == BinaryOperator::Add) RaiseMismatch(*right);
        left = AsValue(context, std::move(left));
        right = AsValue(context, std::move(right));
        return Call("date_diff", {std::move(left), std::move(right)}, Type::Double);
    }
    if (right->type == Type::Date) {
        if (op == BinaryOperator::Subtract) RaiseMismatch(*right);
        std::swap(left, right);
    }
    left = AsValue(context, std::move(left));
    right = AsNumber(context, std::move(right));
    if (op == BinaryOperator::Subtract) right = std::make_shared<Negation>(right, right->type);
    return Call("date_add", {std::move(left), std::move(right)}, Type::Date);
}

TermPtr Sum(Context& context, BinaryOperator op, TermPtr left, TermPtr right) {
    const auto sign = op == BinaryOperator::Add ? ArithmeticOperator::Add : ArithmeticOperator::Subtract;
    const auto text = [](const Term& term) { return term.type == Type::Text; };
    const auto joins = [&text](const Term& term) { return text(term) || term.type == Type::Null; };
    if (op == BinaryOperator::Add && joins(*left) && joins(*right) && (text(*left) || text(*right))) {
        left = AsText(context, std::move(left));
        right = AsText(context, std::move(right));
        return std::make_shared<Concatenation>(Nulls::Spread, std::move(left), std::move(right));
    }
    if (left->type == Type::Date || right->type == Type::Date)
        return DateSum(context, op, std::move(left), std::move(right));
    if (AreExact(*left, *right)) return ExactSum(context, sign, std::move(left), std::move(right));
    left = AsNumber(context, std::move(left));
    right = AsNumber(context, std::move(right));
    return ArithmeticOf(sign, std::move(left), std::move(right), Type::Double);
}

TermPtr Product(Context& context, TermPtr left, TermPtr right) {
    if (!AreExact(*left, *right)) {
        left = AsNumber(context, std::move(left));
        right = AsNumber(context, std::move(right));
        return ArithmeticOf(ArithmeticOperator::Multiply, std::move(left), std::move(right), Type::Double);
    }
    const bool currency = left->type == Type::Currency || right->type == Type::Currency;
    const bool both = left->type == Type::Currency && right->type == Type::Currency;
    left = AsValue(context, std::move(left));
    right = AsValue(context, std::move(right));
    if (both) return Call("cur_mul", {std::move(left), std::move(right)}, Type::Currency);
    return ArithmeticOf(ArithmeticOperator::Multiply, std::move(left), std::move(right),
                        currency ? Type::Currency : Type::Long);
}

TermPtr ByFunction(Context& context, std::string_view name, TermPtr left, TermPtr right, Type type) {
    left = AsNumber(context, std::move(left));
    right = AsNumber(context, std::move(right));
    return Call(name, {std::move(left), std::move(right)}, type);
}

// In the server's dialect the quotient of whole numbers is a whole number, and & is the bitwise And.
bool TakesWhole(const Context& context, const Term& left, const Term& right) {
    return !context.IsJet() && IsWhole(left.type) && IsWhole(right.type);
}

void RequireNumber(const Term& term) {
    if (term.type == Type::Date) RaiseMismatch(term);
}

}  // namespace

TermPtr BindArithmetic(Context& context, BinaryOperator op, TermPtr left, TermPtr right) {
    if (op == BinaryOperator::Concatenate && !(TakesWhole(context, *left, *right)))
        return Concatenated(context, std::move(left), std::move(right));
    if (op == BinaryOperator::Add || op == BinaryOperator::Subtract)
        return Sum(context, op, std::move(left), std::move(right));
    RequireNumber(*left);
    RequireNumber(*right);
    switch (op) {
        case BinaryOperator::Multiply:
            return Product(context, std::move(left), std::move(right));
        case BinaryOperator::Concatenate:
            return ByFunction(context, "bit_and", std::move(left), std::move(right), Type::Long);
        case BinaryOperator::Divide:
            if (TakesWhole(context, *left, *right))
                return ByFunction(context, "idiv", std::move(left), std::move(right), Type::Long);
            return ByFunction(context, "div", std::move(left), std::move(right), Type::Double);
        case BinaryOperator::IntegerDivide:
            return ByFunction(context, "idiv", std::move(left), std::move(right), Type::Long);
        case BinaryOperator::Modulo:
            return ByFunction(context, "mod", std::move(left), std::move(right), Type::Long);
        default:
            return ByFunction(context, "pow", std::move(left), std::move(right), Type::Double);
    }
}

TermPtr BindNegation(Context& context, TermPtr operand) {
    RequireNumber(*operand);
    const auto* literal = If<LiteralTerm>(operand);
    const bool isText = literal && literal->type == Type::Text && literal->literal->literal == LiteralKind::Text;
    if (literal && !isText) {
        auto negative = std::make_shared<LiteralTerm>(*literal);
        negative->negative = !literal->negative;
        return negative;
    }
    const bool reads = operand->type == Type::Text;
    operand = reads ? AsNumber(context, std::move(operand)) : AsValue(context, std::move(operand));
    const Type type = operand->type == Type::Boolean ? Type::Long : operand->type;
    return std::make_shared<Negation>(std::move(operand), type);
}

}  // namespace kpTables::sql::bind
