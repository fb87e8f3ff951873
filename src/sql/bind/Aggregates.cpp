// COUNT, SUM, AVG, MIN, MAX, FIRST, LAST and the measures of dispersion.
#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/Functions.h"

namespace kpTables::sql::bind {

namespace {

struct NamedAggregate {
    std::string_view name;
    AggregateFunction function;
};

constexpr std::array<NamedAggregate, 11> kAggregates = {{
    {"count", AggregateFunction::Count},
    {"sum", AggregateFunction::Sum},
    {"avg", AggregateFunction::Average},
    {"min", AggregateFunction::Minimum},
    {"max", AggregateFunction::Maximum},
    {"first", AggregateFunction::First},
    {"last", AggregateFunction::Last},
    {"stdev", AggregateFunction::StDev},
    {"stdevp", AggregateFunction::StDevP},
    {"var", AggregateFunction::Var},
    {"varp", AggregateFunction::VarP},
}};

const NamedAggregate* FindAggregate(std::string_view function) {
    const auto found = std::find_if(kAggregates.begin(), kAggregates.end(),
                                    [&](const NamedAggregate& known) { return SameName(known.name, function); });
    return found == kAggregates.end() ? nullptr : &*found;
}

TermPtr AggregateOf(AggregateFunction function, const sql::Call& call, TermPtr argument, Type type,
                    const Place& place) {
    auto term = std::make_shared<Aggregate>(function, std::move(argument), place.aggregateFilter, type);
    term->distinct = call.distinct;
    term->offset = call.offset;
    return place.window ? OverWindow(std::move(term), *place.window, place) : term;
}

TermPtr Summable(Context& context, TermPtr argument) {
    if (!IsNumeric(argument->type) && argument->type != Type::Unknown && argument->type != Type::Null)
        RaiseMismatch(*argument, Message("a number is expected in the aggregate"));
    return AsValue(context, std::move(argument));
}

// In the server's dialect the average of whole numbers is a whole number, too.
// The sum of Currency is exact; that of whole numbers is a Double, as it may exceed 32 bits.
TermPtr BindSum(const sql::Call& call, TermPtr argument, const Place& place) {
    argument = Summable(place.context, std::move(argument));
    const Type type = IsWhole(argument->type) ? Type::Double : argument->type;
    return AggregateOf(AggregateFunction::Sum, call, std::move(argument), type, place);
}

// The sum in ten-thousandths by ten thousand times the count: one quotient of whole numbers is the nearest Double.
TermPtr AmountAverage(const sql::Call& call, const TermPtr& argument, const Place& place) {
    TermPtr sum = AggregateOf(AggregateFunction::Sum, call, argument, Type::Double, place);
    TermPtr count = AggregateOf(AggregateFunction::Count, call, argument, Type::Long, place);
    TermPtr units = std::make_shared<Arithmetic>(ArithmeticOperator::Multiply, std::move(count),
                                                 NumberConstant("10000.0", Type::Double), Type::Double);
    return std::make_shared<Arithmetic>(ArithmeticOperator::Divide, std::move(sum), std::move(units), Type::Double);
}

TermPtr BindAverage(const sql::Call& call, TermPtr argument, const Place& place) {
    argument = Summable(place.context, std::move(argument));
    const bool money = argument->type == Type::Currency;
    const bool cut = IsWhole(argument->type) && !place.context.IsJet();
    const Type type = money ? Type::Currency : Type::Double;
    if (money && !place.window) return AmountAverage(call, argument, place);
    TermPtr average = AggregateOf(AggregateFunction::Average, call, std::move(argument), type, place);
    if (cut) return Converted(place.context, Call("fix", {std::move(average)}, Type::Double), Type::Long);
    return money ? AsNumber(place.context, std::move(average)) : average;
}

TermPtr BindCount(const sql::Call& call, const Place& inner, const Place& place) {
    TermPtr argument;
    if (call.arguments.front()->kind != ExpressionKind::Star)
        argument = AsValue(place.context, BindExpression(*call.arguments.front(), inner));
    return AggregateOf(AggregateFunction::Count, call, std::move(argument), Type::Long, place);
}

}  // namespace

bool IsAggregate(std::string_view function) { return FindAggregate(function) != nullptr; }

TermPtr BindAggregate(const sql::Call& call, const Place& place) {
    if (place.aggregateRefusal)
        throw SqlError(ErrorKind::Syntax, Message("{1} ('{2}')", Translated(place.aggregateRefusal), call.name),
                       call.offset);
    if (call.arguments.size() != 1)
        throw SqlError(ErrorKind::Syntax, Message("wrong number of arguments in '{1}'", call.name), call.offset);
    Place inner = place;
    // An aggregate over a window may be one of the groups' aggregates.
    if (!place.window) inner.aggregateRefusal = Translatable("cannot have an aggregate function within another");
    inner.window = nullptr;
    inner.windowed = nullptr;
    const AggregateFunction function = FindAggregate(call.name)->function;
    if (function == AggregateFunction::Count) return BindCount(call, inner, place);
    TermPtr argument = BindExpression(*call.arguments.front(), inner);
    switch (function) {
        case AggregateFunction::Sum:
            return BindSum(call, std::move(argument), place);
        case AggregateFunction::Average:
            return BindAverage(call, std::move(argument), place);
        case AggregateFunction::Minimum:
        case AggregateFunction::Maximum:
        case AggregateFunction::First:
        case AggregateFunction::Last: {
            argument = Collated(AsValue(place.context, std::move(argument)));
            const Type type = argument->type;
            return AggregateOf(function, call, std::move(argument), type, place);
        }
        default:
            argument = AsNumber(place.context, Summable(place.context, std::move(argument)));
            return AggregateOf(function, call, std::move(argument), Type::Double, place);
    }
}

}  // namespace kpTables::sql::bind
