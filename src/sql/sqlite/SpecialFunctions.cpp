#include "sql/sqlite/SpecialFunctions.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "sql/SqlError.h"
#include "sql/sqlite/Cast.h"
#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/Functions.h"
#include "sql/sqlite/Names.h"

namespace kpTables::sql {

namespace {

using Terms = std::vector<Term>;

constexpr std::size_t kAnyNumber = 100;

template <Type kType>
Term Converted(Session& session, Terms arguments) {
    return ConvertedTerm(session, std::move(arguments[0]), kType);
}

// A whole number that is asked for is checked even when the argument is one: a computed one may have outgrown it.
Term ToLong(Session& session, Terms arguments) {
    return StoredTerm(session, ValueTerm(session, std::move(arguments[0])), Type::Long);
}

Term ToDate(Session& session, Terms arguments) { return DateTerm(session, std::move(arguments[0])); }

Term AsItIs(Session& session, Terms arguments) { return ValueTerm(session, std::move(arguments[0])); }

Term IsNullTest(Session& session, Terms arguments) {
    return TestTerm(ValueTerm(session, std::move(arguments[0])), "IS", ConstantTerm("NULL", Type::Null),
                    Precedence::Equality);
}

Term Coalesced(Session& session, Terms arguments) {
    const Type type = CommonType(arguments);
    for (Term& argument : arguments) argument = ConvertedTerm(session, std::move(argument), type);
    return FunctionTerm("COALESCE", arguments, type);
}

// With one argument a Null counts as 0 or as an empty text.
Term Nz(Session& session, Terms arguments) {
    if (arguments.size() == 2) return Coalesced(session, std::move(arguments));
    Term value = ValueTerm(session, std::move(arguments[0]));
    const bool number = IsNumeric(value.type);
    const Type type = value.type;
    return FunctionTerm("COALESCE", {value, ConstantTerm(number ? "0" : "''", type)}, type);
}

Term IsNullOrReplaced(Session& session, Terms arguments) {
    return arguments.size() == 1 ? IsNullTest(session, std::move(arguments)) : Coalesced(session, std::move(arguments));
}

Term Iif(Session& session, Terms arguments) {
    Terms conditions{PredicateTerm(session, std::move(arguments[0]))};
    return ChoiceTerm(session, Term(), std::move(conditions), {std::move(arguments[1]), std::move(arguments[2])});
}

Term Switch(Session& session, Terms arguments) {
    if (arguments.size() % 2 != 0)
        throw SqlError(ErrorKind::Syntax, "wrong number of arguments in 'Switch'", arguments[0].offset);
    Terms conditions;
    Terms results;
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        conditions.push_back(PredicateTerm(session, std::move(arguments[i])));
        results.push_back(std::move(arguments[i + 1]));
    }
    return ChoiceTerm(session, Term(), std::move(conditions), std::move(results));
}

// The index is cut to a whole number.
Term Choose(Session& session, Terms arguments) {
    const Term index = FunctionTerm("kp_int", {RealTerm(session, std::move(arguments[0]))}, Type::Double);
    Terms positions;
    for (std::size_t i = 1; i < arguments.size(); ++i) positions.push_back(ConstantTerm(std::to_string(i), Type::Long));
    arguments.erase(arguments.begin());
    return ChoiceTerm(session, index, std::move(positions), std::move(arguments));
}

// A text is asked whether it reads as one of those; anything else is known by its type.
Term ReadsAs(Session& session, Term value, bool known, std::string_view engine) {
    if (known)
        return TestTerm(ValueTerm(session, std::move(value)), "IS NOT", ConstantTerm("NULL", Type::Null),
                        Precedence::Equality);
    Term term = FunctionTerm(engine, {TextTerm(session, std::move(value))}, Type::Boolean);
    term.predicate = true;
    return term;
}

Term IsNumericTest(Session& session, Terms arguments) {
    const bool number = IsNumeric(arguments[0].type);
    return ReadsAs(session, std::move(arguments[0]), number, "kp_isnumeric");
}

Term IsDateTest(Session& session, Terms arguments) {
    const bool date = arguments[0].type == Type::Date;
    return ReadsAs(session, std::move(arguments[0]), date, "kp_isdate");
}

// A number brought to a whole one keeps its type: what is whole already stays as it is.
Term Rounded(Session& session, Terms arguments, std::string_view real, std::string_view currency) {
    Term value = arguments[0].type == Type::Text ? RealTerm(session, std::move(arguments[0]))
                                                 : ValueTerm(session, std::move(arguments[0]));
    if (IsWhole(value.type)) return value;
    const bool exact = value.type == Type::Currency;
    arguments[0] = exact ? value : RealTerm(session, std::move(value));
    if (arguments.size() > 1) arguments[1] = RealTerm(session, std::move(arguments[1]));
    return FunctionTerm(exact ? currency : real, arguments, exact ? Type::Currency : Type::Double);
}

// A date that is cut to whole days stays a date.
Term Cut(Session& session, Terms arguments, std::string_view real, std::string_view currency) {
    const bool date = arguments[0].type == Type::Date;
    Term days = Rounded(session, std::move(arguments), real, currency);
    return date ? ConvertedTerm(session, std::move(days), Type::Date) : days;
}

Term Int(Session& session, Terms arguments) { return Cut(session, std::move(arguments), "kp_int", "kp_cur_int"); }

Term Fix(Session& session, Terms arguments) { return Cut(session, std::move(arguments), "kp_fix", "kp_cur_fix"); }

Term Round(Session& session, Terms arguments) {
    if (arguments.size() < 2) arguments.push_back(ConstantTerm("0", Type::Long));
    return Rounded(session, std::move(arguments), "kp_round", "kp_cur_round");
}

Term Abs(Session& session, Terms arguments) {
    Term value = arguments[0].type == Type::Currency ? ValueTerm(session, std::move(arguments[0]))
                                                     : RealTerm(session, std::move(arguments[0]));
    const Type type = value.type == Type::Boolean ? Type::Short : value.type;
    return FunctionTerm("abs", {value}, type);
}

Term Format(Session& session, Terms arguments) {
    const Type type = arguments[0].type;
    std::string_view engine = "kp_format_text";
    if (type == Type::Date) {
        engine = "kp_format_date";
        arguments[0] = ValueTerm(session, std::move(arguments[0]));
    } else if (IsNumeric(type)) {
        engine = "kp_format_number";
        arguments[0] = RealTerm(session, std::move(arguments[0]));
    } else {
        arguments[0] = TextTerm(session, std::move(arguments[0]));
    }
    if (arguments.size() == 2) arguments[1] = TextTerm(session, std::move(arguments[1]));
    return FunctionTerm(engine, arguments, Type::Text);
}

// The character may be given by its code.
Term String(Session& session, Terms arguments) {
    const bool code = IsNumeric(arguments[1].type);
    arguments[0] = RealTerm(session, std::move(arguments[0]));
    if (code)
        arguments[1] = FunctionTerm("kp_chr", {RealTerm(session, std::move(arguments[1]))}, Type::Text);
    else
        arguments[1] = TextTerm(session, std::move(arguments[1]));
    return FunctionTerm("kp_string", arguments, Type::Text);
}

// InStr(text, find) or InStr(start, text, find[, compare]).
Term InStr(Session& session, Terms arguments) {
    const bool start = arguments.size() > 2;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const bool number = start && (i == 0 || i == 3);
        arguments[i] = number ? RealTerm(session, std::move(arguments[i])) : TextTerm(session, std::move(arguments[i]));
    }
    return FunctionTerm("kp_instr", arguments, Type::Long);
}

constexpr SpecialFunction kFunctions[] = {
    {"abs", 1, 1, Abs},
    {"cbool", 1, 1, Converted<Type::Boolean>},
    {"ccur", 1, 1, Converted<Type::Currency>},
    {"cdate", 1, 1, ToDate},
    {"cdbl", 1, 1, Converted<Type::Double>},
    {"choose", 2, kAnyNumber, Choose},
    {"cint", 1, 1, Converted<Type::Short>},
    {"clng", 1, 1, ToLong},
    {"coalesce", 2, kAnyNumber, Coalesced},
    {"cstr", 1, 1, Converted<Type::Text>},
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
    {"round", 1, 2, Round},
    {"string", 2, 2, String},
    {"switch", 2, kAnyNumber, Switch},
};

}  // namespace

const SpecialFunction* FindSpecialFunction(std::string_view name) {
    const auto found = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                    [&](const SpecialFunction& f) { return SameName(f.name, name); });
    return found == std::end(kFunctions) ? nullptr : found;
}

}  // namespace kpTables::sql
