#include "sql/sqlite/Crosstab.h"

#include <optional>
#include <string>
#include <utility>

#include "sql/SqlError.h"
#include "sql/sqlite/Comparison.h"
#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/Decimal.h"
#include "sql/sqlite/FromClause.h"
#include "sql/sqlite/Grouping.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/SelectText.h"
#include "sql/sqlite/SelectTranslator.h"

namespace kpTables::sql {

namespace {

constexpr const char* kNoAggregate = "cannot have an aggregate function in the PIVOT expression";
constexpr const char* kNoAggregateInWhere = "cannot have an aggregate function in the WHERE clause";
constexpr const char* kNullHeading = "<>";

const SelectCore& CoreOf(const TransformStatement& statement) {
    const Query* query = statement.query.get();
    while (query->members.size() == 1 && query->members.front().nested) query = query->members.front().nested.get();
    if (query->members.size() == 1) return *query->members.front().core;
    throw SqlError(ErrorKind::Unsupported, "a TRANSFORM of a UNION", query->offset);
}

// One pivot value: what its column is called, and the condition of the rows that belong to it.
struct PivotColumn {
    std::string heading;
    std::string condition;
};

std::string ConditionText(Term pivot, const Term& value) {
    return TestTerm(CollatedTerm(std::move(pivot)), "IS", value, Precedence::Equality).text;
}

// The condition for a value that the pivot query has answered with. A double is told by its text form, which is all
// that is known of it.
std::string StoredCondition(const LiteralValue& value, const Term& pivot) {
    if (value.kind == LiteralKind::Null) return ConditionText(pivot, ConstantTerm("NULL", Type::Null));
    const Term text = ConstantTerm(QuoteText(value.text), Type::Text);
    switch (pivot.type) {
        case Type::Boolean:
            return ConditionText(pivot, ConstantTerm(SameName(value.text, "True") ? "-1" : "0", Type::Boolean));
        case Type::Short:
        case Type::Long:
            return ConditionText(pivot, ConstantTerm(value.text, Type::Long));
        case Type::Currency:
            if (const auto scaled = TenThousandths(value.text))
                return ConditionText(pivot, ConstantTerm(*scaled, Type::Currency));
            throw SqlError(ErrorKind::TypeMismatch, "the pivot value '" + value.text + "' is no Currency", 0);
        case Type::Double:
            return ConditionText(FunctionTerm("kp_text_double", {pivot}, Type::Double), text);
        case Type::Date:
            return ConditionText(pivot, FunctionTerm("kp_to_date", {text}, Type::Date));
        default:
            return ConditionText(pivot, text);
    }
}

PivotColumn ColumnOf(const LiteralValue& value, const Term& pivot) {
    return {value.kind == LiteralKind::Null ? kNullHeading : value.text, StoredCondition(value, pivot)};
}

PivotColumn ColumnOf(Session& session, const Expression& listed, Term pivot) {
    const auto* literal = If<Literal>(&listed);
    if (!literal) throw SqlError(ErrorKind::Syntax, "a constant is expected in the PIVOT list", listed.offset);
    session.Fix(*literal);
    const Scope none(nullptr);
    Term value = TranslateExpression(listed, {session, none});
    MakeComparable(session, pivot, {&value});
    const bool null = literal->literal == LiteralKind::Null;
    return {null ? kNullHeading : literal->text, ConditionText(std::move(pivot), value)};
}

// Most aggregates of no rows are Null by themselves.
bool IsNullOfNoRows(const Expression& aggregate) {
    const auto* call = If<Call>(&aggregate);
    return call && !SameName(call->name, "COUNT");
}

Term CellTerm(SelectTranslator& translator, const Expression& aggregate, const std::string& condition) {
    Term cell = translator.ItemTerm(aggregate, condition);
    if (IsNullOfNoRows(aggregate)) return cell;
    cell.text = "CASE WHEN COUNT(*) FILTER (WHERE " + condition + ") > 0 THEN " + cell.text + " END";
    cell.precedence = Precedence::Primary;
    return cell;
}

}  // namespace

QueryText TranslateCrosstab(Session& session, const TransformStatement& statement,
                            const std::vector<LiteralValue>& pivotValues) {
    if (HasAggregate(*statement.pivot)) throw SqlError(ErrorKind::Syntax, kNoAggregate, statement.pivot->offset);
    SelectTranslator translator(session, CoreOf(statement), nullptr);
    SelectParts parts = PartsOf(translator);
    const Expression& aggregate = *statement.aggregate.expression;
    if (!statement.aggregate.alias.empty())
        parts.items.push_back({translator.ItemTerm(aggregate), statement.aggregate.alias, true});
    const auto pivot = [&] {
        return ValueTerm(session, TranslateExpression(*statement.pivot, {session, translator.Names(), kNoAggregate}));
    };
    std::vector<PivotColumn> columns;
    for (const auto& listed : statement.values) columns.push_back(ColumnOf(session, *listed, pivot()));
    if (statement.values.empty() && !pivotValues.empty())
        for (const Term shared = pivot(); const auto& value : pivotValues) columns.push_back(ColumnOf(value, shared));
    for (const auto& [heading, condition] : columns)
        parts.items.push_back({CellTerm(translator, aggregate, condition), heading, true});
    QueryText query = PrintSelect(session, parts, false);
    query.text += translator.OrderText(statement.query->orderBy) + translator.LimitText();
    return query;
}

QueryText TranslatePivotValues(Session& session, const TransformStatement& statement) {
    const SelectCore& core = CoreOf(statement);
    Scope scope(nullptr);
    const std::string from = TranslateFrom(session, core.from, scope, nullptr).Text();
    Term pivot = ValueTerm(session, TranslateExpression(*statement.pivot, {session, scope, kNoAggregate}));
    pivot = CollatedTerm(std::move(pivot));
    QueryText query;
    query.text = "SELECT DISTINCT " + pivot.text + from;
    if (core.where) {
        const Term where = TranslateCondition(*core.where, {session, scope, kNoAggregateInWhere});
        if (where.truth != true) query.text += " WHERE " + where.text;
    }
    query.text += " ORDER BY 1";
    query.columns.push_back({"Expr1000", pivot.type});
    return query;
}

}  // namespace kpTables::sql
