// Functions about a value's type and its text forms.
#include <array>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/SqlError.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/Functions.h"
#include "sql/bind/Operators.h"
#include "sql/bind/SystemTables.h"

namespace kpTables::sql::bind {

namespace {

struct NamedType {
    Type type;
    std::string_view name;
    std::string_view number;  ///< of VarType
};

constexpr std::array<NamedType, 7> kTypes = {{
    {Type::Short, "Integer", "2"},
    {Type::Long, "Long", "3"},
    {Type::Double, "Double", "5"},
    {Type::Currency, "Currency", "6"},
    {Type::Date, "Date", "7"},
    {Type::Text, "String", "8"},
    {Type::Boolean, "Boolean", "11"},
}};

// A small whole number that a text writes is an Integer.
Type OwnType(Context& context, const Term& value) {
    const auto* literal = If<LiteralTerm>(&value);
    if (!literal || literal->literal->literal != LiteralKind::Integer) return value.type;
    context.Fix(*literal->literal);
    constexpr long kLargestShort = 32767;
    return std::strtol(literal->literal->text.c_str(), nullptr, 10) <= kLargestShort ? Type::Short : Type::Long;
}

TermPtr TypeOf(Context& context, TermPtr value, const TermPtr& whenNull,
               const std::function<TermPtr(const NamedType&)>& answer) {
    const Type type = OwnType(context, *value);
    for (const NamedType& known : kTypes)
        if (known.type == type)
            return BindChoice(context, nullptr, {BindIsNull(context, std::move(value), false)},
                              {whenNull, answer(known)});
    return whenNull;
}

TermPtr NameOfType(Context& context, Terms arguments) {
    return TypeOf(context, std::move(arguments[0]), TextConstant("Null"),
                  [](const NamedType& type) { return TextConstant(type.name); });
}

TermPtr NumberOfType(Context& context, Terms arguments) {
    return TypeOf(context, std::move(arguments[0]), NumberConstant("1", Type::Long),
                  [](const NamedType& type) { return NumberConstant(std::string(type.number), Type::Long); });
}

TermPtr ToByte(Context& context, Terms arguments) {
    return Call("to_byte", {AsNumber(context, AsValue(context, std::move(arguments[0])))}, Type::Short);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param)
TermPtr ToDecimal(Context&, Terms arguments) {
    throw SqlError(
        ErrorKind::Unsupported,
        Message("CDec fails in Jet's queries, too: use CCur, or CAST(x AS DECIMAL(p,s)); it is not supported"),
        arguments[0]->offset);
}

// FormatNumber(x[, digits[, leading zero[, parentheses[, groups]]]]) and the like: -1 is yes, 0 no, -2 the default.
template <char kKind>
TermPtr FormatAs(Context& context, Terms arguments) {
    for (TermPtr& argument : arguments) argument = AsNumber(context, std::move(argument));
    constexpr std::array<const char*, 5> kDefaults = {"0", "-1", "-2", "-2", "-2"};
    for (std::size_t i = arguments.size(); i < kDefaults.size(); ++i)
        arguments.push_back(NumberConstant(kDefaults[i], Type::Long));
    constexpr std::string_view kFunction = kKind == 'n'   ? "format_as_number"
                                           : kKind == 'c' ? "format_as_currency"
                                                          : "format_as_percent";
    return Call(kFunction, std::move(arguments), Type::Text);
}

TermPtr FormatDateTime(Context& context, Terms arguments) {
    TermPtr date = AsValue(context, Converted(context, std::move(arguments[0]), Type::Date));
    if (arguments.size() < 2) arguments.push_back(NumberConstant("0", Type::Long));
    constexpr std::array<const char*, 5> kPatterns = {"General Date", "Long Date", "Short Date", "Long Time",
                                                      "Short Time"};
    Terms forms;
    Terms texts;
    for (std::size_t i = 0; i < kPatterns.size(); ++i) {
        forms.push_back(NumberConstant(std::to_string(i), Type::Long));
        texts.push_back(Call("format_date", {date, TextConstant(kPatterns[i])}, Type::Text));
    }
    return BindChoice(context, AsNumber(context, std::move(arguments[1])), std::move(forms), std::move(texts));
}

constexpr SpecialFunction kTypeFunctions[] = {
    {"cbyte", 1, 1, ToByte},
    {"cdec", 1, 1, ToDecimal},
    {"formatcurrency", 1, 5, FormatAs<'c'>},
    {"formatdatetime", 1, 2, FormatDateTime},
    {"formatnumber", 1, 5, FormatAs<'n'>},
    {"formatpercent", 1, 5, FormatAs<'p'>},
    {"object_id", 1, 2, ObjectId},
    {"typename", 1, 1, NameOfType},
    {"vartype", 1, 1, NumberOfType},
};

}  // namespace

std::span<const SpecialFunction> TypeFunctions() { return kTypeFunctions; }

}  // namespace kpTables::sql::bind
