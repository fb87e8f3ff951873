// SQL Server's functions whose translation depends on their arguments' types.
#include <string>
#include <utility>

#include "sql/bind/Conversions.h"
#include "sql/bind/Functions.h"
#include "sql/bind/Operators.h"

namespace kpTables::sql::bind {

namespace {

constexpr std::size_t kAnyCount = 100;

TermPtr NullIf(Context& context, Terms arguments) {
    TermPtr same = BindComparison(context, BinaryOperator::Equal, arguments[0], arguments[1]);
    const std::size_t offset = arguments[0]->offset;
    return BindChoice(context, nullptr, {std::move(same)}, {NullConstant(offset), std::move(arguments[0])});
}

// A Null counts as an empty text.
TermPtr Concat(Context& context, Terms arguments) {
    TermPtr joined;
    for (TermPtr& argument : arguments) {
        const bool given = argument->kind == TermKind::Literal;
        TermPtr written = AsText(context, std::move(argument));
        TermPtr text =
            given ? std::move(written) : Call("coalesce", {std::move(written), TextConstant("")}, Type::Text);
        if (joined) {
            text = std::make_shared<Concatenation>(Concatenation::Nulls::Spread, std::move(joined), std::move(text));
        }
        joined = std::move(text);
    }
    return joined;
}

TermPtr Ceiling(Context& context, Terms arguments) {
    TermPtr negative = BindNegation(context, std::move(arguments[0]));
    return BindNegation(context, FindSpecialFunction("int")->bind(context, {std::move(negative)}));
}

TermPtr Floor(Context& context, Terms arguments) {
    return FindSpecialFunction("int")->bind(context, std::move(arguments));
}

// In the server's dialect a power of a whole number is a whole number.
TermPtr Power(Context& context, Terms arguments) {
    const bool whole = IsWhole(arguments[0]->type) && !context.IsJet();
    TermPtr base = AsNumber(context, std::move(arguments[0]));
    TermPtr power = Call("pow", {std::move(base), AsNumber(context, std::move(arguments[1]))}, Type::Double);
    if (!whole) return power;
    return Converted(context, Call("fix", {std::move(power)}, Type::Double), Type::Long);
}

TermPtr Square(Context& context, Terms arguments) {
    return Call("pow", {AsNumber(context, std::move(arguments[0])), NumberConstant("2", Type::Long)}, Type::Double);
}

TermPtr Logarithm(Context& context, Terms arguments) {
    TermPtr result = Call("log", {AsNumber(context, std::move(arguments[0]))}, Type::Double);
    if (arguments.size() < 2) return result;
    TermPtr base = Call("log", {AsNumber(context, std::move(arguments[1]))}, Type::Double);
    return Call("div", {std::move(result), std::move(base)}, Type::Double);
}

// The functions of the table have one signature.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
TermPtr Pi(Context&, Terms) { return NumberConstant("3.141592653589793", Type::Double); }

// NOLINTNEXTLINE(performance-unnecessary-value-param)
TermPtr LastCounter(Context&, Terms) { return Call("last_counter", {}, Type::Long); }

// A text as NVARCHAR holds it, two bytes a character.
TermPtr DataLength(Context& context, Terms arguments) {
    TermPtr value = AsValue(context, std::move(arguments[0]));
    const auto bytes = [&](const char* count) {
        return BindChoice(context, nullptr, {BindIsNull(context, value, true)},
                          {NumberConstant(count, Type::Long), NullConstant()});
    };
    switch (value->type) {
        case Type::Boolean:
            return bytes("1");
        case Type::Short:
            return bytes("2");
        case Type::Long:
            return bytes("4");
        case Type::Double:
        case Type::Currency:
        case Type::Date:
            return bytes("8");
        default:
            break;
    }
    TermPtr length = Call("length", {AsText(context, std::move(value))}, Type::Long);
    return std::make_shared<Arithmetic>(ArithmeticOperator::Multiply, std::move(length),
                                        NumberConstant("2", Type::Long), Type::Long);
}

// The server does not count blanks at the end.
TermPtr Length(Context& context, Terms arguments) {
    TermPtr text = AsText(context, std::move(arguments[0]));
    if (!context.IsJet()) text = Call("rtrim", {std::move(text)}, Type::Text);
    return Call("length", {std::move(text)}, Type::Long);
}

// Str(number) has a place for the sign in Jet's dialect, and ten places in the server's.
TermPtr NumberText(Context& context, Terms arguments) {
    for (TermPtr& argument : arguments) argument = AsNumber(context, std::move(argument));
    if (arguments.size() == 1 && context.IsJet()) return Call("str", std::move(arguments), Type::Text);
    if (arguments.size() < 2) arguments.push_back(NumberConstant("10", Type::Long));
    if (arguments.size() < 3) arguments.push_back(NumberConstant("0", Type::Long));
    return Call("str_server", std::move(arguments), Type::Text);
}

// StrConv(text, 1 upper, 2 lower, 3 every word's first letter).
TermPtr ConvertedCase(Context& context, Terms arguments) {
    TermPtr text = AsText(context, std::move(arguments[0]));
    TermPtr form = AsNumber(context, std::move(arguments[1]));
    const auto changed = [&](const char* function) { return Call(function, {text}, Type::Text); };
    return BindChoice(
        context, std::move(form),
        {NumberConstant("1", Type::Long), NumberConstant("2", Type::Long), NumberConstant("3", Type::Long)},
        {changed("ucase"), changed("lcase"), changed("proper")});
}

constexpr SpecialFunction kServerFunctions[] = {
    {"ceiling", 1, 1, Ceiling},
    {"concat", 2, kAnyCount, Concat},
    {"datalength", 1, 1, DataLength},
    {"floor", 1, 1, Floor},
    {"len", 1, 1, Length},
    {"log", 1, 2, Logarithm},
    {"nullif", 2, 2, NullIf},
    {"pi", 0, 0, Pi},
    {"power", 2, 2, Power},
    {"scope_identity", 0, 0, LastCounter},
    {"square", 1, 1, Square},
    {"str", 1, 3, NumberText},
    {"strconv", 2, 2, ConvertedCase},
};

}  // namespace

std::span<const SpecialFunction> ServerFunctions() { return kServerFunctions; }

}  // namespace kpTables::sql::bind
