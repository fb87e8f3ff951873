#include "sql/bind/Cast.h"

#include <string>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/SqlError.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/Functions.h"
#include "sql/bind/Operators.h"

namespace kpTables::sql::bind {

namespace {

constexpr int kUnstatedLength = 30;

[[noreturn]] void RefuseStyle(const Term& style) {
    throw SqlError(ErrorKind::Unsupported, Message("CONVERT takes a style for dates and amounts of money only"),
                   style.offset);
}

// An amount's decimals and its separators of thousands.
TermPtr StyledAmount(Context& context, TermPtr amount, TermPtr style) {
    amount = AsNumber(context, std::move(amount));
    const auto written = [&](const char* pattern) {
        return Call("format_number", {amount, TextConstant(pattern)}, Type::Text);
    };
    const auto number = [](const char* text) { return NumberConstant(text, Type::Long); };
    return BindChoice(context, std::move(style), {number("0"), number("1"), number("2")},
                      {written("0.00"), written("#,##0.00"), written("0.0000")});
}

// The text of a cast; without a style, a date has the server's in its dialect.
TermPtr TextToCast(Context& context, TermPtr operand, TermPtr style) {
    const bool date = operand->type == Type::Date;
    if (style && operand->type == Type::Currency) return StyledAmount(context, std::move(operand), std::move(style));
    // The server ignores the style of a text, too.
    if (style && !date && operand->type != Type::Text) RefuseStyle(*style);
    if (!date || (!style && context.IsJet())) return AsText(context, std::move(operand));
    if (!style) style = NumberConstant("0", Type::Long);
    return Call("date_style", {AsValue(context, std::move(operand)), std::move(style)}, Type::Text);
}

TermPtr CastToText(Context& context, TermPtr operand, const TypeName& type, TermPtr style) {
    operand = TextToCast(context, std::move(operand), std::move(style));
    const int length = type.length > 0 ? type.length : kUnstatedLength;
    TermPtr limit = NumberConstant(std::to_string(length), Type::Long);
    if (type.fixed) return Call("char", {std::move(operand), std::move(limit)}, Type::Text);
    if (type.memo) return operand;
    return Call("substr", {std::move(operand), NumberConstant("1", Type::Long), std::move(limit)}, Type::Text);
}

TermPtr CastToDate(Context& context, TermPtr operand, TermPtr style) {
    if (style && operand->type == Type::Text)
        return Call("date_of_style", {AsText(context, std::move(operand)), std::move(style)}, Type::Date);
    if (style && operand->type != Type::Date) RefuseStyle(*style);
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

// Rounded once, from what is given; BIGINT truncates.
TermPtr CastToDecimal(Context& context, TermPtr operand, const TypeName& type) {
    const bool amount = operand->type == Type::Currency;
    operand = amount ? AsValue(context, std::move(operand)) : AsNumber(context, std::move(operand));
    if (type.cuts && amount) operand = Call("cur_fix", {std::move(operand)}, Type::Currency);
    if (type.cuts && operand->type == Type::Double) operand = Call("fix", {std::move(operand)}, Type::Double);
    return Call(amount ? "decimal_fit" : "to_decimal",
                {std::move(operand), NumberConstant(std::to_string(type.precision), Type::Long),
                 NumberConstant(std::to_string(type.scale), Type::Long)},
                Type::Currency);
}

}  // namespace

TermPtr BindCast(Context& context, TermPtr operand, const TypeName& type, TermPtr style) {
    if (type.type == Type::Text) return CastToText(context, std::move(operand), type, std::move(style));
    if (type.type == Type::Date) {
        TermPtr date = CastToDate(context, std::move(operand), std::move(style));
        if (!type.dayOnly && !type.timeOnly) return date;
        return Call(type.dayOnly ? "datevalue" : "timevalue", {AsValue(context, std::move(date))}, Type::Date);
    }
    if (style) RefuseStyle(*style);
    // A BIT is 1 on the server.
    if (operand->type == Type::Boolean && IsNumeric(type.type) && type.type != Type::Boolean && !context.IsJet())
        operand = BindNegation(context, std::move(operand));
    if (type.precision > 0) {
        if (operand->type == Type::Date) operand = ServerDays(context, std::move(operand));
        return CastToDecimal(context, std::move(operand), type);
    }
    if (operand->type == Type::Date && IsNumeric(type.type) && type.type != Type::Boolean) {
        return Converted(context, ServerDays(context, std::move(operand)), type.type);
    }
    const bool whole = type.type == Type::Short || type.type == Type::Long;
    if (whole && operand->type == Type::Double)
        operand = Call("fix", {AsNumber(context, std::move(operand))}, Type::Double);
    return Converted(context, std::move(operand), type.type);
}

TermPtr BindTriedCast(Context& context, TermPtr operand, const TypeName& type, const Expression* style) {
    if (style)
        throw SqlError(ErrorKind::Unsupported, Message("TRY_CONVERT with a style is not supported"), style->offset);
    // Whatever a value is, it has a text.
    if (type.type == Type::Text) return BindCast(context, std::move(operand), type, nullptr);
    const std::size_t offset = operand->offset;
    if (operand->type == Type::Date || type.precision > 0 || type.dayOnly || type.timeOnly)
        throw SqlError(ErrorKind::Unsupported,
                       Message("TRY_CAST of a date, or to DECIMAL, DATE or TIME, is not supported"), offset);
    struct Tried {
        Type type;
        std::string_view function;
    };
    constexpr Tried kTried[] = {{Type::Short, "try_short"},     {Type::Long, "try_long"},
                                {Type::Double, "try_double"},   {Type::Currency, "try_currency"},
                                {Type::Boolean, "try_boolean"}, {Type::Date, "try_date"}};
    // A text as it is, a number as a double.
    operand = operand->type == Type::Text ? AsText(context, std::move(operand)) : AsNumber(context, std::move(operand));
    for (const auto& [wanted, function] : kTried)
        if (wanted == type.type) return Call(function, {std::move(operand)}, type.type);
    return operand;
}

TermPtr BindDate(Context& context, TermPtr operand) {
    const auto* literal = If<LiteralTerm>(operand);
    if (!literal || literal->negative) return Converted(context, std::move(operand), Type::Date);
    auto date = std::make_shared<LiteralTerm>(*literal);
    date->type = Type::Date;
    return date;
}

}  // namespace kpTables::sql::bind
