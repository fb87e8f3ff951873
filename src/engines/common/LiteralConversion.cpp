#include "engines/common/LiteralConversion.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "functions/ServerDate.h"
#include "kpTables/Convert.h"
#include "kpTables/text/Message.h"
#include "sql/Position.h"
#include "sql/SqlError.h"
#include "text/DateText.h"
#include "text/TextOrder.h"

namespace kpTables::engines {

namespace {

using sql::Binding;
using sql::LiteralKind;
using sql::LiteralValue;

Date DateFrom(const LiteralValue& literal, double dayZero) {
    // Between # signs Jet takes the month first.
    if (literal.kind == LiteralKind::Date) {
        if (const auto date = text::ParseDate(literal.text, text::DateOrder::MonthFirst))
            return Date::FromSerial(*date);
    }
    if (literal.kind == LiteralKind::Text) {
        if (const auto date = Date::Parse(literal.text)) return *date;
    }
    // Both dialects' casts of a text are bound alike; Jet never needs the server's forms.
    if (literal.kind == LiteralKind::Text) {
        if (const auto date = functions::ReadServerDate(literal.text)) return Date::FromSerial(*date);
    }
    const auto days = literal.kind == LiteralKind::Date ? std::nullopt : ParseNumber(literal.text);
    if (!days) Raise(ErrorNumber::TypeMismatch);
    return Date::FromSerial(*days + dayZero);
}

/// The value as an exact Currency when it is written as a plain decimal, else nothing.
std::optional<Currency> PlainDecimal(const LiteralValue& literal) {
    const std::string_view text = Trim(literal.text);
    if (text.empty() || text.find_first_not_of("+-.0123456789") != text.npos) return std::nullopt;
    if (literal.kind == LiteralKind::Date || !ParseNumber(text)) return std::nullopt;
    // A sign after the digits is valid in a number, but Currency does not parse it.
    if (text.find_first_of("+-", 1) != text.npos) return std::nullopt;
    return Currency::FromDecimalText(text);
}

bool IsLower(const LiteralValue& a, const LiteralValue& b, Binding binding) {
    switch (binding) {
        case Binding::Text:
            return text::CompareTexts(TextOf(a), TextOf(b)) < 0;
        case Binding::Date:
        case Binding::DateYear:
        case Binding::DateMonth:
        case Binding::DateDay:
            return DateOf(a).Serial() < DateOf(b).Serial();
        case Binding::ServerDate:
            return ServerDateOf(a).Serial() < ServerDateOf(b).Serial();
        case Binding::Boolean:
            return BooleanOf(a) && !BooleanOf(b);
        default:
            return engines::NumberOf(a) < engines::NumberOf(b);
    }
}

const char* Wanted(Binding binding) {
    switch (binding) {
        case Binding::Short:
        case Binding::Long:
            return Translated("a whole number");
        case Binding::Number:
        case Binding::CurrencyBound:
            return Translated("a number");
        case Binding::Currency:
            return Translated("an amount of money");
        case Binding::Boolean:
            return Translated("True or False");
        case Binding::Text:
            return Translated("a text");
        default:
            return Translated("a date");
    }
}

}  // namespace

std::optional<std::int64_t> WrittenWhole(const LiteralValue& literal) noexcept {
    const std::string_view text = literal.text;
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::int64_t WholeOf(const LiteralValue& literal, double lowest, double highest) {
    const auto whole = WrittenWhole(literal);
    const double value = whole ? static_cast<double>(*whole) : std::nearbyint(NumberOf(literal));
    if (!(value >= lowest && value <= highest)) Raise(ErrorNumber::Overflow);
    return static_cast<std::int64_t>(value);
}

double NumberOf(const LiteralValue& literal) {
    if (literal.kind == LiteralKind::Date) return DateOf(literal).Serial();
    if (literal.kind == LiteralKind::Boolean) return CBool(literal.text) ? -1 : 0;
    const auto number = ParseNumber(literal.text);
    if (!number) Raise(ErrorNumber::TypeMismatch);
    return *number;
}

bool BooleanOf(const LiteralValue& literal) {
    return literal.kind == LiteralKind::Text ? CBool(literal.text) : NumberOf(literal) != 0;
}

Currency CurrencyOf(const LiteralValue& literal) {
    if (const auto exact = PlainDecimal(literal)) return *exact;
    return Currency::FromDouble(NumberOf(literal));
}

std::optional<Currency> ExactCurrencyOf(const LiteralValue& literal) {
    constexpr std::size_t kPointAndDecimals = 5;
    const std::string_view text = Trim(literal.text);
    const auto point = std::min(text.find('.'), text.size());
    if (text.size() - point > kPointAndDecimals) return std::nullopt;
    try {
        return PlainDecimal(literal);
    } catch (const Error&) {
        return std::nullopt;
    }
}

Date DateOf(const LiteralValue& literal) { return DateFrom(literal, 0); }

Date ServerDateOf(const LiteralValue& literal) { return DateFrom(literal, functions::kServerDayZero); }

std::string TextOf(const LiteralValue& literal) {
    switch (literal.kind) {
        case LiteralKind::Date:
            return DateOf(literal).ToText();
        case LiteralKind::Decimal:
            return Text(NumberOf(literal));
        default:
            return literal.text;
    }
}

const LiteralValue& ChosenLiteral(const sql::Parameter& parameter, const std::vector<LiteralValue>& literals) {
    const LiteralValue& own = literals.at(static_cast<std::size_t>(parameter.literal));
    const LiteralValue& other = literals.at(static_cast<std::size_t>(parameter.pair.other));
    const bool otherIsHigher = IsLower(own, other, parameter.binding);
    return otherIsHigher == parameter.pair.isHigher ? other : own;
}

LiteralValue Negated(const LiteralValue& literal) {
    // A given value may have a minus of its own.
    if (literal.text.starts_with('-')) return {literal.kind, literal.text.substr(1), literal.offset};
    return {literal.kind, "-" + literal.text, literal.offset};
}

void RaiseNotConverted(const Error& error, const sql::Parameter& parameter, const LiteralValue& literal,
                       std::string_view text) {
    const bool overflow = error.Number() == static_cast<std::int32_t>(ErrorNumber::Overflow);
    const std::string place = sql::PlaceText(sql::Locate(text, literal.offset));
    const std::string value =
        literal.kind == LiteralKind::Text ? "'" + literal.text + "'" : (parameter.negative ? "-" : "") + literal.text;
    const char* const wanted = Wanted(parameter.binding);
    const std::string message = overflow ? Message("Overflow at {1}: {2} is too large for {3}", place, value, wanted)
                                         : Message("Type mismatch at {1}: {2} is not {3}", place, value, wanted);
    throw sql::SqlError(overflow ? sql::ErrorKind::Overflow : sql::ErrorKind::TypeMismatch, message, literal.offset,
                        true);
}

}  // namespace kpTables::engines
