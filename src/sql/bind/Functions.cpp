#include "sql/bind/Functions.h"

#include <string>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/FunctionTable.h"
#include "sql/bind/Interval.h"

namespace kpTables::sql::bind {

namespace {

TermPtr BindInterval(const Expression& expression, const Place& place) {
    const auto* word = sql::If<Column>(&expression);
    const auto interval = word && word->table.empty() ? IntervalOfWord(word->name) : std::string_view();
    if (!interval.empty()) return TextConstant(interval, expression.offset);
    return AsText(place.context, BindExpression(expression, place));
}

TermPtr BindArgument(const Expression& expression, char kind, const Place& place) {
    if (kind == 'i') return BindInterval(expression, place);
    TermPtr term = BindExpression(expression, place);
    if (kind == 't') return AsText(place.context, std::move(term));
    if (kind == 'd') return Converted(place.context, std::move(term), Type::Date);
    return AsNumber(place.context, std::move(term));
}

void CheckCount(const sql::Call& call, std::size_t least, std::size_t most) {
    if (call.arguments.size() < least || call.arguments.size() > most)
        throw SqlError(ErrorKind::Syntax, Message("wrong number of arguments in '{1}'", call.name), call.offset);
}

TermPtr BindFunction(const sql::Call& call, const DialectFunction& function, const Place& place) {
    CheckCount(call, function.required, function.arguments.size());
    Terms arguments;
    for (std::size_t i = 0; i < call.arguments.size(); ++i)
        arguments.push_back(BindArgument(*call.arguments[i], function.arguments[i], place));
    auto term = std::make_shared<CallTerm>(function.function, std::move(arguments), function.result);
    term->offset = call.offset;
    return term;
}

[[noreturn]] void RaiseUndefined(const sql::Call& call) {
    throw SqlError(ErrorKind::Unsupported, Message("undefined function '{1}'", call.name), call.offset);
}

}  // namespace

TermPtr BindCall(const sql::Call& call, const Place& place) {
    if (IsAggregate(call.name)) return BindAggregate(call, place);
    if (call.distinct)
        throw SqlError(ErrorKind::Syntax, Message("DISTINCT stands in aggregates only, not in '{1}'", call.name),
                       call.offset);
    if (const auto* function = FindDialectFunction(call.name)) return BindFunction(call, *function, place);
    const auto* special = FindSpecialFunction(call.name);
    if (!special) RaiseUndefined(call);
    CheckCount(call, special->least, special->most);
    Terms arguments;
    for (const auto& argument : call.arguments) arguments.push_back(BindExpression(*argument, place));
    return At(special->bind(place.context, std::move(arguments)), call.offset);
}

TermPtr BindChoice(Context& context, TermPtr operand, Terms conditions, Terms results) {
    const Type type = CommonType(results);
    const std::size_t offset = results.front()->offset;
    const bool hasOperand = operand != nullptr;
    const bool hasElse = results.size() > conditions.size();
    for (TermPtr& result : results) result = Converted(context, std::move(result), type);
    Terms parts;
    if (hasOperand) parts.push_back(std::move(operand));
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        parts.push_back(std::move(conditions[i]));
        parts.push_back(std::move(results[i]));
    }
    if (hasElse) parts.push_back(std::move(results.back()));
    auto choice = std::make_shared<CaseTerm>(std::move(parts), hasOperand, hasElse, type);
    choice->offset = offset;
    return choice;
}

}  // namespace kpTables::sql::bind
