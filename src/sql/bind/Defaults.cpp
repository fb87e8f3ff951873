// The DEFAULT of a column definition.
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <system_error>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Decimal.h"
#include "sql/bind/Functions.h"
#include "sql/bind/Scope.h"
#include "sql/bind/StatementBinder.h"
#include "text/DateText.h"

namespace kpTables::sql::bind {

namespace {

[[noreturn]] void Mismatch(const Expression& value) {
    throw SqlError(ErrorKind::TypeMismatch, Message("the default does not fit the column's type"), value.offset);
}

bool IsWholeText(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string NumberText(const Literal& literal, const Expression& value, Type type) {
    const std::string& text = literal.text;
    const bool quoted = literal.literal == LiteralKind::Text;
    if (literal.literal == LiteralKind::Date) Mismatch(value);
    if (type == Type::Double && !quoted) return text;
    if (type == Type::Currency || type == Type::Double) {
        const auto scaled = TenThousandths(text);
        if (!scaled) Mismatch(value);
        return type == Type::Currency ? *scaled : text;
    }
    if (!IsWholeText(text)) Mismatch(value);
    if (type == Type::Boolean) return text.find_first_not_of('0') == text.npos ? "0" : "-1";
    return text;
}

// The text is digits, with or without a minus.
void CheckRange(const std::string& text, const Expression& value, Type type) {
    const bool small = type == Type::Short;
    const std::int64_t most =
        small ? std::numeric_limits<std::int16_t>::max() : std::numeric_limits<std::int32_t>::max();
    std::int64_t number = 0;
    const bool read = std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
    if (!read || number > most || number < -most - 1) Mismatch(value);
}

// Between # signs the month comes first.
std::string TextOf(const Literal& literal) {
    if (literal.literal != LiteralKind::Date) return literal.text;
    const auto date = text::ParseDate(literal.text, text::DateOrder::MonthFirst);
    return date ? text::IsoDateText(*date) : literal.text;
}

TermPtr BindConstant(const Literal& literal, const Expression& value, Type type, bool negative) {
    if (literal.literal == LiteralKind::Null) return NullConstant();
    TermPtr text = TextConstant((negative ? "-" : "") + TextOf(literal));
    if (type == Type::Text) return text;
    if (type == Type::Date) return std::make_shared<Conversion>(std::move(text), Type::Date);
    const bool truth = literal.literal == LiteralKind::Boolean;
    if (truth && type == Type::Currency) Mismatch(value);
    const std::string number = truth ? (SameName(literal.text, "True") ? "-1" : "0") : NumberText(literal, value, type);
    const bool flips = negative && type != Type::Boolean && number != "0";
    const std::string flipped = number.front() == '-' ? number.substr(1) : "-" + number;
    const std::string& result = flips ? flipped : number;
    if (type == Type::Short || type == Type::Long) CheckRange(result, value, type);
    return NumberConstant(result, type);
}

}  // namespace

TermPtr BindDefault(Context& context, const Expression& value, Type type) {
    const auto* minus = sql::If<Unary>(&value);
    const bool negative = minus && minus->op == UnaryOperator::Minus;
    const Expression& inner = negative ? *minus->operand : value;
    if (const auto* literal = sql::If<Literal>(&inner)) {
        context.Fix(*literal);
        return BindConstant(*literal, value, type, negative);
    }
    const auto* word = sql::If<Column>(&value);
    if (const auto flag = word ? context.FlagOfWord(*word) : std::nullopt)
        return BindConstant({LiteralKind::Boolean, *flag ? "True" : "False", -1, word->offset}, value, type, false);
    const auto* call = sql::If<sql::Call>(&value);
    if (!call || !call->arguments.empty() || type != Type::Date)
        throw SqlError(ErrorKind::Unsupported, Message("a default is a constant, Date() or Now()"), value.offset);
    const Scope none(nullptr);
    TermPtr term = BindCall(*call, {context, none});
    if (term->type != Type::Date) Mismatch(value);
    return term;
}

}  // namespace kpTables::sql::bind
