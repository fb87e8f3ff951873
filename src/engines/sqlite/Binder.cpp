#include "Binder.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "functions/ServerDate.h"
#include "kpTables/Convert.h"
#include "kpTables/Currency.h"
#include "kpTables/Date.h"
#include "kpTables/Error.h"
#include "sql/Position.h"

namespace kpTables::sqlite {

namespace {

using sql::Binding;
using sql::LiteralKind;
using sql::LiteralValue;

std::optional<std::int64_t> WholeNumber(std::string_view text) noexcept {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

Date DateOf(const LiteralValue& literal, double dayZero) {
    if (literal.kind == LiteralKind::Text || literal.kind == LiteralKind::Date) {
        if (const auto date = Date::Parse(literal.text)) return *date;
    }
    // Both dialects' casts of a text are bound alike; Jet has no use for the server's forms.
    if (literal.kind == LiteralKind::Text) {
        if (const auto date = functions::ReadServerDate(literal.text)) return Date::FromSerial(*date);
    }
    const auto days = literal.kind == LiteralKind::Date ? std::nullopt : ParseNumber(literal.text);
    if (!days) Raise(ErrorNumber::TypeMismatch);
    return Date::FromSerial(*days + dayZero);
}

double NumberOf(const LiteralValue& literal) {
    if (literal.kind == LiteralKind::Date) return DateOf(literal, 0).Serial();
    if (literal.kind == LiteralKind::Boolean) return CBool(literal.text) ? -1 : 0;
    const auto number = ParseNumber(literal.text);
    if (!number) Raise(ErrorNumber::TypeMismatch);
    return *number;
}

/// The value as an exact Currency when it is written as a plain decimal, else nothing.
std::optional<Currency> PlainDecimal(const LiteralValue& literal) {
    const std::string_view text = Trim(literal.text);
    if (text.empty() || text.find_first_not_of("+-.0123456789") != text.npos) return std::nullopt;
    if (literal.kind == LiteralKind::Date || !ParseNumber(text)) return std::nullopt;
    // A sign behind the digits is a number too, but not for Currency's reader.
    if (text.find_first_of("+-", 1) != text.npos) return std::nullopt;
    return Currency::FromDecimalText(text);
}

/// With the minus that stands before it.
LiteralValue Negated(const LiteralValue& literal) { return {literal.kind, "-" + literal.text}; }

Currency CurrencyOf(const LiteralValue& literal) {
    if (const auto exact = PlainDecimal(literal)) return *exact;
    return Currency::FromDouble(NumberOf(literal));
}

std::string TextOf(const LiteralValue& literal) {
    switch (literal.kind) {
        case LiteralKind::Date:
            return DateOf(literal, 0).ToText();
        case LiteralKind::Decimal:
            return Text(NumberOf(literal));
        default:
            return literal.text;
    }
}

void BindWhole(PreparedStatement& statement, int parameter, const LiteralValue& literal, double lowest,
               double highest) {
    const auto whole = WholeNumber(literal.text);
    const double value = whole ? static_cast<double>(*whole) : std::nearbyint(NumberOf(literal));
    if (!(value >= lowest && value <= highest)) Raise(ErrorNumber::Overflow);
    statement.BindInteger(parameter, static_cast<std::int64_t>(value));
}

void BindNumber(PreparedStatement& statement, int parameter, const LiteralValue& literal) {
    if (const auto whole = WholeNumber(literal.text)) {
        statement.BindInteger(parameter, *whole);
    } else {
        statement.BindReal(parameter, NumberOf(literal));
    }
}

/// As PlainDecimal, nothing also for more than a Currency holds.
std::optional<Currency> InRange(const LiteralValue& literal) {
    try {
        return PlainDecimal(literal);
    } catch (const Error&) {
        return std::nullopt;
    }
}

void BindCurrencyBound(PreparedStatement& statement, int parameter, const LiteralValue& literal) {
    constexpr std::size_t kPointAndDecimals = 5;
    const std::string_view text = Trim(literal.text);
    const auto point = std::min(text.find('.'), text.size());
    // Four decimals or fewer are an exact count of ten-thousandths; any other bound lies between two of them, or beyond
    // what a Currency can be.
    if (text.size() - point <= kPointAndDecimals) {
        if (const auto exact = InRange(literal)) return statement.BindInteger(parameter, exact->Scaled());
    }
    statement.BindReal(parameter, NumberOf(literal) * Currency::kScale);
}

void BindDay(PreparedStatement& statement, int parameter, Date date) {
    const double time = date.TimeOfDay();
    if (time > 0) return statement.BindReal(parameter, date.Day() + time);
    statement.BindInteger(parameter, date.Day());
}

void BindOne(PreparedStatement& statement, int parameter, Binding binding, const LiteralValue& literal) {
    switch (binding) {
        case Binding::Short:
            return BindWhole(statement, parameter, literal, std::numeric_limits<std::int16_t>::min(),
                             std::numeric_limits<std::int16_t>::max());
        case Binding::Long:
            return BindWhole(statement, parameter, literal, std::numeric_limits<std::int32_t>::min(),
                             std::numeric_limits<std::int32_t>::max());
        case Binding::Number:
            return BindNumber(statement, parameter, literal);
        case Binding::Currency:
            return statement.BindInteger(parameter, CurrencyOf(literal).Scaled());
        case Binding::CurrencyBound:
            return BindCurrencyBound(statement, parameter, literal);
        case Binding::Boolean:
            return statement.BindInteger(parameter, literal.kind == LiteralKind::Text ? (CBool(literal.text) ? -1 : 0)
                                                    : NumberOf(literal) != 0          ? -1
                                                                                      : 0);
        case Binding::Date:
            return statement.BindTextCopy(parameter, DateOf(literal, 0).ToIso());
        case Binding::ServerDate:
            return statement.BindTextCopy(parameter, DateOf(literal, functions::kServerDayZero).ToIso());
        case Binding::DateYear:
            return statement.BindInteger(parameter, DateOf(literal, 0).Year());
        case Binding::DateMonth:
            return statement.BindInteger(parameter, DateOf(literal, 0).Month());
        case Binding::DateDay:
            return BindDay(statement, parameter, DateOf(literal, 0));
        case Binding::Text:
            return literal.kind == LiteralKind::Text ? statement.BindText(parameter, literal.text)
                                                     : statement.BindTextCopy(parameter, TextOf(literal));
    }
}

const char* Wanted(Binding binding) noexcept {
    switch (binding) {
        case Binding::Short:
        case Binding::Long:
            return "a whole number";
        case Binding::Number:
        case Binding::CurrencyBound:
            return "a number";
        case Binding::Currency:
            return "an amount of money";
        case Binding::Boolean:
            return "True or False";
        case Binding::Text:
            return "a text";
        default:
            return "a date";
    }
}

/// Where the literal of that number stands in the text.
std::size_t OffsetOf(int ordinal, std::string_view text) {
    for (const sql::Token& token : sql::Tokenize(text).tokens) {
        if (token.ordinal == ordinal) return token.offset;
    }
    return 0;
}

sql::SqlError Refusal(const Error& error, const sql::Parameter& parameter, const LiteralValue& literal,
                      std::string_view text) {
    const bool overflow = error.Number() == static_cast<std::int32_t>(ErrorNumber::Overflow);
    const std::size_t offset = OffsetOf(parameter.literal, text);
    const sql::Position at = sql::Locate(text, offset);
    std::string message = overflow ? "Overflow" : "Type mismatch";
    message += " at line " + std::to_string(at.line) + ", column " + std::to_string(at.column) + ": " +
               (literal.kind == LiteralKind::Text ? "'" + literal.text + "'"
                                                  : (parameter.negative ? "-" : "") + literal.text) +
               (overflow ? " is too large for " : " is not ") + Wanted(parameter.binding);
    return {overflow ? sql::ErrorKind::Overflow : sql::ErrorKind::TypeMismatch, message, offset, true};
}

}  // namespace

void BindLiterals(PreparedStatement& statement, const std::vector<sql::Parameter>& parameters,
                  const std::vector<LiteralValue>& literals, std::string_view text) {
    int number = 0;
    for (const sql::Parameter& parameter : parameters) {
        const LiteralValue& literal = literals.at(static_cast<std::size_t>(parameter.literal));
        try {
            ++number;
            if (parameter.negative) {
                BindOne(statement, number, parameter.binding, Negated(literal));
            } else {
                BindOne(statement, number, parameter.binding, literal);
            }
        } catch (const DatabaseError&) {
            throw;
        } catch (const Error& error) {
            throw Refusal(error, parameter, literal, text);
        }
    }
}

}  // namespace kpTables::sqlite
