#include <algorithm>
#include <string>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Cast.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/Functions.h"
#include "sql/bind/Operators.h"

namespace kpTables::sql::bind {

namespace {

constexpr std::size_t kAnyNumber = 100;

template <Type kType>
TermPtr ConvertedTo(Context& context, Terms arguments) {
    return Converted(context, std::move(arguments[0]), kType);
}

// A conversion to a whole number is checked even when the argument is one: a computed one may be out of range.
TermPtr ToLong(Context& context, Terms arguments) {
    return AsStored(context, AsValue(context, std::move(arguments[0])), Type::Long);
}

TermPtr ToDate(Context& context, Terms arguments) { return BindDate(context, std::move(arguments[0])); }

TermPtr AsItIs(Context& context, Terms arguments) { return AsValue(context, std::move(arguments[0])); }

TermPtr IsNullTest(Context& context, Terms arguments) { return BindIsNull(context, std::move(arguments[0]), false); }

TermPtr Coalesced(Context& context, Terms arguments) {
    const Type type = CommonType(arguments);
    for (TermPtr& argument : arguments) argument = Converted(context, std::move(argument), type);
    return Call("coalesce", std::move(arguments), type);
}

// With one argument a Null becomes 0 or an empty text.
TermPtr Nz(Context& context, Terms arguments) {
    if (arguments.size() == 2) return Coalesced(context, std::move(arguments));
    TermPtr value = AsValue(context, std::move(arguments[0]));
    const Type type = value->type;
    TermPtr replacement = IsNumeric(type) ? NumberConstant("0", type) : TextConstant("");
    return Call("coalesce", {std::move(value), std::move(replacement)}, type);
}

TermPtr IsNullOrReplaced(Context& context, Terms arguments) {
    return arguments.size() == 1 ? IsNullTest(context, std::move(arguments)) : Coalesced(context, std::move(arguments));
}

TermPtr Iif(Context& context, Terms arguments) {
    Terms conditions{AsCondition(context, std::move(arguments[0]))};
    return BindChoice(context, nullptr, std::move(conditions), {std::move(arguments[1]), std::move(arguments[2])});
}

TermPtr Switch(Context& context, Terms arguments) {
    if (arguments.size() % 2 != 0)
        throw SqlError(ErrorKind::Syntax, Message("wrong number of arguments in 'Switch'"), arguments[0]->offset);
    Terms conditions;
    Terms results;
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        conditions.push_back(AsCondition(context, std::move(arguments[i])));
        results.push_back(std::move(arguments[i + 1]));
    }
    return BindChoice(context, nullptr, std::move(conditions), std::move(results));
}

// The index is rounded down.
TermPtr Choose(Context& context, Terms arguments) {
    TermPtr index = Call("int", {AsNumber(context, std::move(arguments[0]))}, Type::Double);
    Terms positions;
    for (std::size_t i = 1; i < arguments.size(); ++i)
        positions.push_back(NumberConstant(std::to_string(i), Type::Long));
    arguments.erase(arguments.begin());
    return BindChoice(context, std::move(index), std::move(positions), std::move(arguments));
}

// A text is tested when the statement runs; anything else is known by its type.
TermPtr ReadsAs(Context& context, TermPtr value, bool known, std::string_view function) {
    if (known) return BindIsNull(context, std::move(value), true);
    auto test = std::make_shared<CallTerm>(function, Terms{AsText(context, std::move(value))}, Type::Boolean);
    test->predicate = true;
    return test;
}

// The server's tests yield 1 and 0.
TermPtr AsFlag(Context& context, TermPtr test) {
    if (context.IsJet()) return test;
    return BindChoice(context, nullptr, {std::move(test)},
                      {NumberConstant("1", Type::Long), NumberConstant("0", Type::Long)});
}

TermPtr IsNumericTest(Context& context, Terms arguments) {
    const bool number = IsNumeric(arguments[0]->type);
    return AsFlag(context, ReadsAs(context, std::move(arguments[0]), number, "isnumeric"));
}

TermPtr IsDateTest(Context& context, Terms arguments) {
    const bool date = arguments[0]->type == Type::Date;
    return AsFlag(context,
                  ReadsAs(context, std::move(arguments[0]), date, context.IsJet() ? "isdate" : "isdate_server"));
}

// A number that is rounded keeps its type: a whole one is left as it is.
TermPtr Rounded(Context& context, Terms arguments, std::string_view real, std::string_view currency) {
    TermPtr value = arguments[0]->type == Type::Text ? AsNumber(context, std::move(arguments[0]))
                                                     : AsValue(context, std::move(arguments[0]));
    if (IsWhole(value->type)) return value;
    const bool exact = value->type == Type::Currency;
    arguments[0] = exact ? value : AsNumber(context, std::move(value));
    for (std::size_t i = 1; i < arguments.size(); ++i) arguments[i] = AsNumber(context, std::move(arguments[i]));
    return Call(exact ? currency : real, std::move(arguments), exact ? Type::Currency : Type::Double);
}

// A date truncated to whole days stays a date.
TermPtr Cut(Context& context, Terms arguments, std::string_view real, std::string_view currency) {
    const bool date = arguments[0]->type == Type::Date;
    TermPtr days = Rounded(context, std::move(arguments), real, currency);
    return date ? Converted(context, std::move(days), Type::Date) : days;
}

TermPtr Int(Context& context, Terms arguments) { return Cut(context, std::move(arguments), "int", "cur_int"); }

TermPtr Fix(Context& context, Terms arguments) { return Cut(context, std::move(arguments), "fix", "cur_fix"); }

TermPtr Round(Context& context, Terms arguments) {
    if (arguments.size() < 2) arguments.push_back(NumberConstant("0", Type::Long));
    if (context.IsJet() && arguments.size() < 3) return Rounded(context, std::move(arguments), "round", "cur_round");
    // The server rounds ties away from zero and, with a negative count, places before the point.
    if (!IsWhole(arguments[0]->type)) return Rounded(context, std::move(arguments), "round_server", "cur_round_server");
    for (TermPtr& argument : arguments) argument = AsNumber(context, std::move(argument));
    return Converted(context, Call("round_server", std::move(arguments), Type::Double), Type::Long);
}

TermPtr Abs(Context& context, Terms arguments) {
    TermPtr value = arguments[0]->type == Type::Currency ? AsValue(context, std::move(arguments[0]))
                                                         : AsNumber(context, std::move(arguments[0]));
    const Type type = value->type == Type::Boolean ? Type::Short : value->type;
    return Call("abs", {value}, type);
}

TermPtr Format(Context& context, Terms arguments) {
    const Type type = arguments[0]->type;
    std::string_view function = "format_text";
    if (type == Type::Date) {
        function = "format_date";
        arguments[0] = AsValue(context, std::move(arguments[0]));
    } else if (IsNumeric(type)) {
        function = "format_number";
        arguments[0] = AsNumber(context, std::move(arguments[0]));
    } else {
        arguments[0] = AsText(context, std::move(arguments[0]));
    }
    if (arguments.size() == 2) arguments[1] = AsText(context, std::move(arguments[1]));
    return Call(function, std::move(arguments), Type::Text);
}

// The character may be given by its code.
TermPtr String(Context& context, Terms arguments) {
    const bool code = IsNumeric(arguments[1]->type);
    arguments[0] = AsNumber(context, std::move(arguments[0]));
    if (code)
        arguments[1] = Call("chr", {AsNumber(context, std::move(arguments[1]))}, Type::Text);
    else
        arguments[1] = AsText(context, std::move(arguments[1]));
    return Call("string", std::move(arguments), Type::Text);
}

// InStr(text, find) or InStr(start, text, find[, compare]).
TermPtr InStr(Context& context, Terms arguments) {
    const bool start = arguments.size() > 2;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const bool number = start && (i == 0 || i == 3);
        arguments[i] = number ? AsNumber(context, std::move(arguments[i])) : AsText(context, std::move(arguments[i]));
    }
    return Call("instr", std::move(arguments), Type::Long);
}

constexpr SpecialFunction kSpecialFunctions[] = {
    {"abs", 1, 1, Abs},
    {"cbool", 1, 1, ConvertedTo<Type::Boolean>},
    {"ccur", 1, 1, ConvertedTo<Type::Currency>},
    {"cdate", 1, 1, ToDate},
    {"cdbl", 1, 1, ConvertedTo<Type::Double>},
    {"choose", 2, kAnyNumber, Choose},
    {"cint", 1, 1, ConvertedTo<Type::Short>},
    {"clng", 1, 1, ToLong},
    {"coalesce", 2, kAnyNumber, Coalesced},
    {"cstr", 1, 1, ConvertedTo<Type::Text>},
    {"cvar", 1, 1, AsItIs},
    {"cvdate", 1, 1, ToDate},
    {"fix", 1, 1, Fix},
    {"format", 1, 2, Format},
    {"iif", 3, 3, Iif},
    {"instr", 2, 4, InStr},
    {"int", 1, 1, Int},
    {"isdate", 1, 1, IsDateTest},
    {"isnull", 1, 2, IsNullOrReplaced},
    {"isnumeric", 1, 1, IsNumericTest},
    {"nz", 1, 2, Nz},
    {"round", 1, 3, Round},
    {"string", 2, 2, String},
    {"switch", 2, kAnyNumber, Switch},
};

}  // namespace

const SpecialFunction* FindSpecialFunction(std::string_view name) {
    for (const auto functions :
         {std::span<const SpecialFunction>(kSpecialFunctions), ServerFunctions(), TypeFunctions(), RandomFunctions()}) {
        const auto found = std::find_if(functions.begin(), functions.end(),
                                        [&](const SpecialFunction& f) { return SameName(f.name, name); });
        if (found != functions.end()) return &*found;
    }
    return nullptr;
}

}  // namespace kpTables::sql::bind
