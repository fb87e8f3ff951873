#include "sql/sqlite/Aggregates.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "sql/SqlError.h"
#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/Names.h"

namespace kpTables::sql {

namespace {

constexpr std::array<std::string_view, 11> kAggregates = {"count", "sum",   "avg",    "min", "max", "first",
                                                          "last",  "stdev", "stdevp", "var", "varp"};

// "NAME([DISTINCT ]argument)[ FILTER (WHERE condition)]"
Term Aggregated(std::string_view name, const Call& call, const Term& argument, Type type,
                const ExpressionContext& context) {
    Term counted = argument;
    if (call.distinct) counted.text = "DISTINCT " + counted.text;
    Term term = FunctionTerm(name, {counted}, type);
    term.constant = false;
    term.offset = call.offset;
    if (!context.aggregateFilter.empty()) term.text += " FILTER (WHERE " + context.aggregateFilter + ")";
    return term;
}

Term Summable(Session& session, Term argument) {
    if (!IsNumeric(argument.type) && argument.type != Type::Unknown && argument.type != Type::Null)
        RaiseMismatch(argument, "a number is expected in the aggregate");
    return ValueTerm(session, std::move(argument));
}

// The sum of Currency is exact; that of whole numbers is a Double, as it may pass 32 bits.
Term Sum(const Call& call, Term argument, const ExpressionContext& context) {
    argument = Summable(context.session, std::move(argument));
    const bool whole = IsWhole(argument.type);
    Term term = Aggregated("SUM", call, argument, whole ? Type::Double : argument.type, context);
    if (whole) term.text = "CAST(" + term.text + " AS REAL)";
    return term;
}

Term Average(const Call& call, Term argument, const ExpressionContext& context) {
    argument = Summable(context.session, std::move(argument));
    Term term = Aggregated("AVG", call, argument, argument.type, context);
    if (argument.type == Type::Currency) return RealTerm(context.session, std::move(term));
    term.type = Type::Double;
    return term;
}

Term Spread(const std::string& name, const Call& call, Term argument, const ExpressionContext& context) {
    argument = RealTerm(context.session, Summable(context.session, std::move(argument)));
    return Aggregated("kp_" + name, call, argument, Type::Double, context);
}

Term Extreme(std::string_view name, const Call& call, Term argument, const ExpressionContext& context) {
    argument = CollatedTerm(ValueTerm(context.session, std::move(argument)));
    return Aggregated(name, call, argument, argument.type, context);
}

Term Count(const Call& call, const ExpressionContext& inner, const ExpressionContext& context) {
    const bool all = call.arguments.front()->kind == ExpressionKind::Star;
    const Term argument = all ? ConstantTerm("*", Type::Unknown)
                              : ValueTerm(context.session, TranslateExpression(*call.arguments.front(), inner));
    return Aggregated("COUNT", call, argument, Type::Long, context);
}

}  // namespace

bool IsAggregate(std::string_view function) {
    return std::any_of(kAggregates.begin(), kAggregates.end(),
                       [&](std::string_view name) { return SameName(name, function); });
}

Term AggregateTerm(const Call& call, const ExpressionContext& context) {
    if (context.aggregateRefusal)
        throw SqlError(ErrorKind::Syntax, std::string(context.aggregateRefusal) + " ('" + call.name + "')",
                       call.offset);
    if (call.arguments.size() != 1)
        throw SqlError(ErrorKind::Syntax, "wrong number of arguments in '" + call.name + "'", call.offset);
    ExpressionContext inner = context;
    inner.aggregateRefusal = "cannot have an aggregate function within another";
    const std::string name = FoldedName(call.name);
    if (name == "count") return Count(call, inner, context);
    Term argument = TranslateExpression(*call.arguments.front(), inner);
    if (name == "sum") return Sum(call, std::move(argument), context);
    if (name == "avg") return Average(call, std::move(argument), context);
    if (name == "min") return Extreme("MIN", call, std::move(argument), context);
    if (name == "max") return Extreme("MAX", call, std::move(argument), context);
    if (name == "first") return Extreme("kp_first", call, std::move(argument), context);
    if (name == "last") return Extreme("kp_last", call, std::move(argument), context);
    return Spread(name, call, std::move(argument), context);
}

}  // namespace kpTables::sql
