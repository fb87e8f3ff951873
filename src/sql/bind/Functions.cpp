#include "sql/bind/Functions.h"

#include <string>
#include <utility>

#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Cast.h"
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
        throw SqlError(ErrorKind::Syntax, "wrong number of arguments in '" + call.name + "'", call.offset);
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

// The type that CONVERT's first argument names: a word, or a word with a length.
TypeName ConvertedType(const Expression& name) {
    struct Known {
        std::string_view word;
        Type type;
        bool fixed;
    };
    static constexpr Known kKnown[] = {
        {"int", Type::Long, false},     {"integer", Type::Long, false},  {"smallint", Type::Short, false},
        {"float", Type::Double, false}, {"real", Type::Double, false},   {"money", Type::Currency, false},
        {"bit", Type::Boolean, false},  {"datetime", Type::Date, false}, {"smalldatetime", Type::Date, false},
        {"varchar", Type::Text, false}, {"nvarchar", Type::Text, false}, {"char", Type::Text, true},
        {"nchar", Type::Text, true},
    };
    const auto* call = sql::If<sql::Call>(&name);
    const auto* column = sql::If<Column>(&name);
    const std::string word = call ? call->name : column ? column->name : std::string();
    for (const auto& known : kKnown) {
        if (!SameName(known.word, word)) continue;
        TypeName type;
        type.type = known.type;
        type.fixed = known.fixed;
        return type;
    }
    throw SqlError(ErrorKind::Unsupported, "unknown type in CONVERT", name.offset);
}

TermPtr BindConvert(const sql::Call& call, const Place& place) {
    CheckCount(call, 2, 2);
    TypeName type = ConvertedType(*call.arguments[0]);
    const auto* sized = sql::If<sql::Call>(call.arguments[0].get());
    if (sized && sized->arguments.size() == 1)
        type.length = static_cast<int>(place.context.WholeNumber(*sized->arguments[0]));
    return BindCast(place.context, BindExpression(*call.arguments[1], place), type);
}

}  // namespace

TermPtr BindCall(const sql::Call& call, const Place& place) {
    if (IsAggregate(call.name)) return BindAggregate(call, place);
    if (call.distinct)
        throw SqlError(ErrorKind::Syntax, "DISTINCT stands in aggregates only, not in '" + call.name + "'",
                       call.offset);
    if (const auto* function = FindDialectFunction(call.name)) return BindFunction(call, *function, place);
    if (SameName(call.name, "CONVERT")) return BindConvert(call, place);
    const auto* special = FindSpecialFunction(call.name);
    if (!special) throw SqlError(ErrorKind::Unsupported, "undefined function '" + call.name + "'", call.offset);
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
