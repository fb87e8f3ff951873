#include "sql/sqlite/Functions.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "sql/SqlError.h"
#include "sql/sqlite/Aggregates.h"
#include "sql/sqlite/Cast.h"
#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/FunctionTable.h"
#include "sql/sqlite/Interval.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/SpecialFunctions.h"

namespace kpTables::sql {

namespace {

Term IntervalTerm(const Expression& expression, const ExpressionContext& context) {
    const auto* word = If<Column>(&expression);
    const auto interval = word && word->table.empty() ? IntervalOfWord(word->name) : std::string_view();
    if (!interval.empty()) return ConstantTerm(QuoteText(interval), Type::Text, expression.offset);
    return TextTerm(context.session, TranslateExpression(expression, context));
}

Term ArgumentTerm(const Expression& expression, char kind, const ExpressionContext& context) {
    if (kind == 'i') return IntervalTerm(expression, context);
    Term term = TranslateExpression(expression, context);
    if (kind == 't') return TextTerm(context.session, std::move(term));
    if (kind == 'd') return ConvertedTerm(context.session, std::move(term), Type::Date);
    return RealTerm(context.session, std::move(term));
}

void CheckCount(const Call& call, std::size_t least, std::size_t most) {
    if (call.arguments.size() < least || call.arguments.size() > most)
        throw SqlError(ErrorKind::Syntax, "wrong number of arguments in '" + call.name + "'", call.offset);
}

Term EngineCall(const Call& call, const DialectFunction& function, const ExpressionContext& context) {
    CheckCount(call, function.required, function.arguments.size());
    std::vector<Term> arguments;
    for (std::size_t i = 0; i < call.arguments.size(); ++i)
        arguments.push_back(ArgumentTerm(*call.arguments[i], function.arguments[i], context));
    Term term = FunctionTerm(function.engine, arguments, function.result);
    term.offset = call.offset;
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
    const auto* call = If<Call>(&name);
    const auto* column = If<Column>(&name);
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

Term ConvertTerm(const Call& call, const ExpressionContext& context) {
    CheckCount(call, 2, 2);
    TypeName type = ConvertedType(*call.arguments[0]);
    if (const auto* sized = If<Call>(call.arguments[0].get()); sized && sized->arguments.size() == 1)
        type.length = static_cast<int>(context.session.WholeNumber(*sized->arguments[0]));
    return CastTerm(context.session, TranslateExpression(*call.arguments[1], context), type);
}

}  // namespace

Term CallTerm(const Call& call, const ExpressionContext& context) {
    if (IsAggregate(call.name)) return AggregateTerm(call, context);
    if (call.distinct)
        throw SqlError(ErrorKind::Syntax, "DISTINCT stands in aggregates only, not in '" + call.name + "'",
                       call.offset);
    if (const auto* function = FindDialectFunction(call.name)) return EngineCall(call, *function, context);
    if (SameName(call.name, "CONVERT")) return ConvertTerm(call, context);
    const auto* special = FindSpecialFunction(call.name);
    if (!special) throw SqlError(ErrorKind::Unsupported, "undefined function '" + call.name + "'", call.offset);
    CheckCount(call, special->least, special->most);
    std::vector<Term> arguments;
    for (const auto& argument : call.arguments) arguments.push_back(TranslateExpression(*argument, context));
    Term term = special->make(context.session, std::move(arguments));
    term.offset = call.offset;
    return term;
}

Term ChoiceTerm(Session& session, const Term& operand, std::vector<Term> conditions, std::vector<Term> results) {
    const Type type = CommonType(results);
    Term term;
    term.text = operand.text.empty() ? "CASE" : "CASE " + operand.text;
    term.constant = operand.text.empty() || operand.constant;
    for (Term& result : results) {
        result = ConvertedTerm(session, std::move(result), type);
        term.constant = term.constant && result.constant;
    }
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        term.text.append(" WHEN ").append(conditions[i].text).append(" THEN ").append(results[i].text);
        term.constant = term.constant && conditions[i].constant;
    }
    if (results.size() > conditions.size()) term.text.append(" ELSE ").append(results.back().text);
    term.text.append(" END");
    term.type = type;
    term.offset = results.front().offset;
    return term;
}

}  // namespace kpTables::sql
