// TRANSFORM ... PIVOT: aggregates over the rows of each pivot value.
#include <optional>
#include <string>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/Decimal.h"
#include "sql/bind/Grouping.h"
#include "sql/bind/Operators.h"
#include "sql/bind/QueryBinder.h"
#include "sql/bind/StatementBinder.h"
#include "sql/bind/Walk.h"

namespace kpTables::sql::bind {

namespace {

constexpr const char* kNoAggregate = Translatable("cannot have an aggregate function in the PIVOT expression");
constexpr const char* kNullHeading = "<>";

const sql::Query& QueryOf(const TransformStatement& statement) {
    const sql::Query* query = statement.query.get();
    while (query->members.size() == 1 && query->members.front().nested) query = query->members.front().nested.get();
    return *query;
}

const SelectCore& CoreOf(const TransformStatement& statement) {
    const sql::Query& query = QueryOf(statement);
    if (query.members.size() == 1) return *query.members.front().core;
    throw SqlError(ErrorKind::Unsupported, Message("a TRANSFORM of a UNION"), query.offset);
}

// One pivot value: its column's name, and the condition of its rows.
struct PivotColumn {
    std::string heading;
    TermPtr condition;
};

TermPtr RowsOf(TermPtr pivot, TermPtr value) {
    return Compare(ComparisonOperator::Same, Collated(std::move(pivot)), std::move(value));
}

// The condition for a value that the pivot query returned. A double is compared by its text form, which is all that is
// known of it.
TermPtr StoredCondition(const LiteralValue& value, const TermPtr& pivot) {
    if (value.kind == LiteralKind::Null) return RowsOf(pivot, NullConstant());
    switch (pivot->type) {
        case Type::Boolean:
            return RowsOf(pivot, NumberConstant(SameName(value.text, "True") ? "-1" : "0", Type::Boolean));
        case Type::Short:
        case Type::Long:
            return RowsOf(pivot, NumberConstant(value.text, Type::Long));
        case Type::Currency:
            if (const auto scaled = TenThousandths(value.text))
                return RowsOf(pivot, NumberConstant(*scaled, Type::Currency));
            throw SqlError(ErrorKind::TypeMismatch, Message("the pivot value '{1}' is no Currency", value.text), 0);
        case Type::Double:
            return Compare(ComparisonOperator::Same, std::make_shared<Conversion>(pivot, Type::Text),
                           TextConstant(value.text));
        case Type::Date:
            return RowsOf(pivot, std::make_shared<Conversion>(TextConstant(value.text), Type::Date));
        default:
            return RowsOf(pivot, TextConstant(value.text));
    }
}

PivotColumn ColumnOf(const LiteralValue& value, const TermPtr& pivot) {
    return {value.kind == LiteralKind::Null ? kNullHeading : value.text, StoredCondition(value, pivot)};
}

PivotColumn ColumnOf(Context& context, const Expression& listed, TermPtr pivot) {
    const auto* literal = sql::If<Literal>(&listed);
    if (!literal) throw SqlError(ErrorKind::Syntax, Message("a constant is expected in the PIVOT list"), listed.offset);
    context.Fix(*literal);
    const Scope none(nullptr);
    TermPtr value = BindExpression(listed, {context, none});
    MakeComparable(context, pivot, {&value});
    const bool null = literal->literal == LiteralKind::Null;
    return {null ? kNullHeading : literal->text, RowsOf(std::move(pivot), std::move(value))};
}

// Most aggregates over no rows are Null.
bool IsNullOfNoRows(const Expression& aggregate) {
    const auto* call = sql::If<sql::Call>(&aggregate);
    return call && !SameName(call->name, "COUNT");
}

TermPtr BindCell(SelectBinder& binder, const Expression& aggregate, const TermPtr& condition) {
    TermPtr cell = binder.BindItem(aggregate, condition);
    if (IsNullOfNoRows(aggregate)) return cell;
    auto count = std::make_shared<Aggregate>(AggregateFunction::Count, nullptr, condition, Type::Long);
    TermPtr any = Compare(ComparisonOperator::Greater, std::move(count), NumberConstant("0", Type::Long));
    const Type type = cell->type;
    return std::make_shared<CaseTerm>(Terms{std::move(any), std::move(cell)}, false, false, type);
}

/// A sum or a count of groups is that of their parts, added up.
bool IsAddedUp(const Term& term) {
    const auto* aggregate = If<Aggregate>(&term);
    if (!aggregate || aggregate->distinct) return false;
    return aggregate->function == AggregateFunction::Sum || aggregate->function == AggregateFunction::Count;
}

/// Which the server does not know as the same where it stands twice.
bool HoldsLiteral(const Term& expression) {
    return AnyTerm(expression, [](const Term& term) { return term.kind == TermKind::Parameter; });
}

bool IsOfManyRows(const Term& term) {
    return term.kind == TermKind::Aggregate || term.kind == TermKind::InQuery || term.kind == TermKind::Exists ||
           term.kind == TermKind::ScalarQuery;
}

}  // namespace

Query BindCrosstab(Context& context, const TransformStatement& statement,
                   const std::vector<LiteralValue>& pivotValues) {
    if (HasAggregate(*statement.pivot))
        throw SqlError(ErrorKind::Syntax, Translated(kNoAggregate), statement.pivot->offset);
    SelectBinder binder(context, CoreOf(statement), nullptr);
    const Expression& aggregate = *statement.aggregate.expression;
    std::vector<Output> added;
    if (!statement.aggregate.alias.empty())
        added.push_back({binder.BindItem(aggregate), statement.aggregate.alias, true});
    const auto pivot = [&] {
        return AsValue(context, BindExpression(*statement.pivot, {context, binder.Names(), kNoAggregate}));
    };
    std::vector<PivotColumn> columns;
    for (const auto& listed : statement.values) columns.push_back(ColumnOf(context, *listed, pivot()));
    if (statement.values.empty() && !pivotValues.empty())
        for (const TermPtr shared = pivot(); const auto& value : pivotValues)
            columns.push_back(ColumnOf(value, shared));
    for (const auto& [heading, condition] : columns)
        added.push_back({BindCell(binder, aggregate, condition), heading, true});
    binder.BindOrder(statement.query->orderBy);
    binder.BindLimit();
    for (Output& item : added) binder.AddItem(std::move(item));
    return bind::QueryOf(binder.Take(), QueryUse::Result);
}

std::optional<Query> BindCellRows(Context& context, const TransformStatement& statement, CellLayout& layout) {
    const SelectCore& core = CoreOf(statement);
    if (!statement.values.empty() || core.distinct || core.top || core.having || !statement.query->orderBy.empty())
        return std::nullopt;
    if (HasAggregate(*statement.pivot)) return std::nullopt;
    SelectBinder binder(context, core, nullptr);
    TermPtr cell = binder.BindItem(*statement.aggregate.expression);
    TermPtr pivot = AsValue(context, BindExpression(*statement.pivot, {context, binder.Names(), kNoAggregate}));
    binder.BindLimit();
    Select select = binder.Take();
    const bool isPlain = !select.groupBy.empty() && !select.windowed && !select.limit && !select.comparesRows;
    const bool isNumber = pivot->type == Type::Short || pivot->type == Type::Long;
    if (!isPlain || !isNumber || HoldsLiteral(*pivot) || !IsAddedUp(*cell)) return std::nullopt;
    layout = {};
    for (const Output& item : select.items) {
        layout.isSum.push_back(IsAddedUp(*item.term));
        if (!layout.isSum.back() && AnyTerm(*item.term, IsOfManyRows)) return std::nullopt;
    }
    if (!statement.aggregate.alias.empty()) layout.total = statement.aggregate.alias;
    const Terms keys = select.groupBy;
    select.groupBy.push_back(pivot);
    select.items.push_back({std::move(pivot), "Expr1000", true});
    select.items.push_back({std::move(cell), "Expr1001", true});
    for (const TermPtr& key : keys) {
        if (HoldsLiteral(*key)) return std::nullopt;
        if (IsWhole(key->type)) select.items.push_back({key, "Expr" + std::to_string(1002 + layout.keys++), true});
    }
    return bind::QueryOf(std::move(select), QueryUse::Result);
}

Query BindPivotValues(Context& context, const TransformStatement& statement) {
    const SelectCore& core = CoreOf(statement);
    Scope scope(nullptr);
    Select select;
    select.distinct = true;
    select.from = BindFrom(context, core.from, scope, nullptr);
    TermPtr pivot = Collated(AsValue(context, BindExpression(*statement.pivot, {context, scope, kNoAggregate})));
    if (core.where) {
        TermPtr condition = BindCondition(*core.where, {context, scope, kNoAggregateInWhere});
        if (!IsTrue(*condition)) select.where = std::move(condition);
    }
    select.items.push_back({pivot, "Expr1000"});
    Query query = bind::QueryOf(std::move(select), QueryUse::Result);
    query.orderBy.push_back({std::move(pivot), false, 1});
    return query;
}

}  // namespace kpTables::sql::bind
