#include "sql/bind/Cast.h"

#include <string>
#include <utility>

#include "sql/bind/Conversions.h"

namespace kpTables::sql::bind {

namespace {

constexpr int kUnstatedLength = 30;

TermPtr CastToText(Context& context, TermPtr operand, const TypeName& type) {
    operand = AsText(context, std::move(operand));
    const int length = type.length > 0 ? type.length : kUnstatedLength;
    TermPtr limit = NumberConstant(std::to_string(length), Type::Long);
    if (type.fixed) return Call("char", {std::move(operand), std::move(limit)}, Type::Text);
    if (type.memo) return operand;
    return Call("substr", {std::move(operand), NumberConstant("1", Type::Long), std::move(limit)}, Type::Text);
}

TermPtr CastToDate(Context& context, TermPtr operand) {
    const auto* literal = If<LiteralTerm>(operand);
    if (literal && !literal->negative) {
        auto date = std::make_shared<LiteralTerm>(*literal);
        date->type = Type::Date;
        date->serverDate =
            literal->literal->literal != LiteralKind::Text && literal->literal->literal != LiteralKind::Date;
        return date;
    }
    if (operand->type == Type::Date) return operand;
    if (operand->type != Type::Text) operand = AsNumber(context, std::move(operand));
    return Call("server_date", {AsValue(context, std::move(operand))}, Type::Date);
}

// A date as the server counts its days, from 1900-01-01.
TermPtr ServerDays(Context& context, TermPtr operand) {
    operand = AsValue(context, std::move(operand));
    return std::make_shared<Arithmetic>(ArithmeticOperator::Subtract,
                                        std::make_shared<Conversion>(std::move(operand), Type::Double),
                                        NumberConstant("2", Type::Double), Type::Double);
}

}  // namespace

TermPtr BindCast(Context& context, TermPtr operand, const TypeName& type) {
    if (type.type == Type::Text) return CastToText(context, std::move(operand), type);
    if (type.type == Type::Date) return CastToDate(context, std::move(operand));
    if (operand->type == Type::Date && IsNumeric(type.type) && type.type != Type::Boolean) {
        return Converted(context, ServerDays(context, std::move(operand)), type.type);
    }
    const bool whole = type.type == Type::Short || type.type == Type::Long;
    if (whole && operand->type == Type::Double)
        operand = Call("fix", {AsNumber(context, std::move(operand))}, Type::Double);
    return Converted(context, std::move(operand), type.type);
}

TermPtr BindDate(Context& context, TermPtr operand) {
    const auto* literal = If<LiteralTerm>(operand);
    if (!literal || literal->negative) return Converted(context, std::move(operand), Type::Date);
    auto date = std::make_shared<LiteralTerm>(*literal);
    date->type = Type::Date;
    return date;
}

}  // namespace kpTables::sql::bind
