#include "sql/sqlite/Cast.h"

#include <string>
#include <utility>

#include "sql/sqlite/Conversion.h"

namespace kpTables::sql {

namespace {

constexpr int kUnstatedLength = 30;

Term CastToText(Session& session, Term operand, const TypeName& type) {
    operand = TextTerm(session, std::move(operand));
    const int length = type.length > 0 ? type.length : kUnstatedLength;
    const Term limit = ConstantTerm(std::to_string(length), Type::Long);
    if (type.fixed) return FunctionTerm("kp_char", {operand, limit}, Type::Text);
    if (type.memo) return operand;
    return FunctionTerm("substr", {operand, ConstantTerm("1", Type::Long), limit}, Type::Text);
}

Term CastToDate(Session& session, Term operand) {
    const bool number = operand.literal && operand.literal->literal != LiteralKind::Text &&
                        operand.literal->literal != LiteralKind::Date;
    if (operand.literal && !operand.negative) {
        operand.type = Type::Date;
        operand.serverDate = number;
        return operand;
    }
    if (operand.type == Type::Date) return operand;
    if (operand.type != Type::Text) operand = RealTerm(session, std::move(operand));
    return FunctionTerm("kp_server_date", {ValueTerm(session, std::move(operand))}, Type::Date);
}

// A date as the server counts its days, from 1900-01-01.
Term ServerDays(Session& session, Term operand) {
    operand = FunctionTerm("kp_date_number", {ValueTerm(session, std::move(operand))}, Type::Double);
    return OperatorTerm(std::move(operand), "-", ConstantTerm("2", Type::Double), Precedence::Additive, Type::Double);
}

}  // namespace

Term CastTerm(Session& session, Term operand, const TypeName& type) {
    if (type.type == Type::Text) return CastToText(session, std::move(operand), type);
    if (type.type == Type::Date) return CastToDate(session, std::move(operand));
    if (operand.type == Type::Date && IsNumeric(type.type) && type.type != Type::Boolean) {
        return ConvertedTerm(session, ServerDays(session, std::move(operand)), type.type);
    }
    const bool whole = type.type == Type::Short || type.type == Type::Long;
    if (whole && operand.type == Type::Double)
        operand = FunctionTerm("kp_fix", {RealTerm(session, std::move(operand))}, Type::Double);
    return ConvertedTerm(session, std::move(operand), type.type);
}

Term DateTerm(Session& session, Term operand) {
    if (operand.literal && !operand.negative) {
        operand.type = Type::Date;
        return operand;
    }
    return ConvertedTerm(session, std::move(operand), Type::Date);
}

}  // namespace kpTables::sql
