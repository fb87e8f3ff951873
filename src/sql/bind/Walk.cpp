#include "sql/bind/Walk.h"

#include <algorithm>
#include <set>
#include <utility>

namespace kpTables::sql::bind {

namespace {

using Visit = std::function<void(const TermPtr&)>;
using Change = std::function<TermPtr(const TermPtr&)>;

std::shared_ptr<Query> QueryIn(const Term& term) {
    switch (term.kind) {
        case TermKind::InQuery:
            return As<InQueryTerm>(term).query;
        case TermKind::Exists:
            return As<ExistsTerm>(term).query;
        case TermKind::ScalarQuery:
            return As<ScalarQuery>(term).query;
        default:
            return nullptr;
    }
}

void VisitOptional(const TermPtr& term, const Visit& visit) {
    if (term) visit(term);
}

void VisitJoins(const Table& table, const Visit& visit) {
    if (table.source) return;
    VisitJoins(*table.left, visit);
    VisitJoins(*table.right, visit);
    VisitOptional(table.on, visit);
}

TablePtr ChangedJoins(const TablePtr& table, const Change& change) {
    if (table->source) return table;
    return Joined(table->method, ChangedJoins(table->left, change), ChangedJoins(table->right, change),
                  table->on ? change(table->on) : nullptr);
}

class QueryWalk {
public:
    explicit QueryWalk(const std::function<void(Query&)>& visit) : visit_(visit) {}

    void Walk(const TermPtr& expression) {
        ForEachTerm(*expression, [this](const Term& term) {
            if (const auto query = QueryIn(term)) Walk(*query);
        });
    }

    void Walk(Query& query) {
        if (!seen_.insert(&query).second) return;
        for (const Query::Member& member : query.members) {
            for (const SourcePtr& source : SourcesOf(member.select))
                if (source->query) Walk(*source->query);
            ForEachExpression(member.select, [this](const TermPtr& expression) { Walk(expression); });
        }
        visit_(query);
    }

private:
    const std::function<void(Query&)>& visit_;
    std::set<const Query*> seen_;
};

}  // namespace

void ForEachTerm(const Term& term, const std::function<void(const Term&)>& visit) {
    std::vector<const Term*> open{&term};
    while (!open.empty()) {
        const Term& next = *open.back();
        open.pop_back();
        visit(next);
        for (const TermPtr& operand : next.operands) open.push_back(operand.get());
    }
}

bool AnyTerm(const Term& term, const std::function<bool(const Term&)>& test) {
    std::vector<const Term*> open{&term};
    while (!open.empty()) {
        const Term& next = *open.back();
        open.pop_back();
        if (test(next)) return true;
        for (const TermPtr& operand : next.operands) open.push_back(operand.get());
    }
    return false;
}

bool ShowsAggregate(const Select& select) {
    return std::ranges::any_of(select.items, [](const Output& item) {
        return AnyTerm(*item.term, [](const Term& term) { return term.kind == TermKind::Aggregate; });
    });
}

bool HasOneRowAtMost(const Query& query) {
    if (query.members.size() != 1) return false;
    const Select& select = query.members.front().select;
    if (select.grouped || ShowsAggregate(select)) return select.groupBy.empty();
    if (select.from.size() != 1 || !select.from.front()->source || !select.where) return false;
    const auto isCounter = [&](const Term& term) {
        const auto* column = If<ColumnTerm>(&term);
        return column && column->source == select.from.front()->source &&
               column->source->columns[column->column].counter;
    };
    const auto names = [&](const Term& condition) {
        const auto* equality = If<Comparison>(&condition);
        if (!equality || equality->op != ComparisonOperator::Equal) return false;
        const Term& left = *equality->operands[0];
        const Term& right = *equality->operands[1];
        return (isCounter(left) && right.constant) || (isCounter(right) && left.constant);
    };
    const auto* both = If<Logic>(select.where);
    if (!both || both->op != LogicOperator::And) return names(*select.where);
    return std::ranges::any_of(both->operands, [&](const TermPtr& operand) { return names(*operand); });
}

void ForEachExpression(const Select& select, const Visit& visit) {
    for (const TablePtr& table : select.from) VisitJoins(*table, visit);
    VisitOptional(select.where, visit);
    for (const TermPtr& key : select.groupBy) visit(key);
    for (const Output& item : select.items) visit(item.term);
    VisitOptional(select.having, visit);
    for (const OrderKey& key : select.orderBy) visit(key.term);
}

void ForEachExpression(const BoundStatement& statement, const Visit& visit) {
    if (statement.insert)
        for (const Terms& row : statement.insert->rows)
            for (const TermPtr& value : row) visit(value);
    if (statement.update) {
        for (const Update::Assignment& assignment : statement.update->assignments) visit(assignment.value);
        VisitOptional(statement.update->where, visit);
    }
    if (statement.erase) VisitOptional(statement.erase->where, visit);
}

void ForEachQuery(const BoundStatement& statement, const std::function<void(Query&)>& visit) {
    QueryWalk walk(visit);
    for (const CommonQuery& common : statement.with) walk.Walk(*common.query);
    if (statement.query) walk.Walk(*statement.query);
    if (statement.update && statement.update->from) walk.Walk(*statement.update->from->query);
    if (statement.insert && statement.insert->query) walk.Walk(*statement.insert->query);
    ForEachExpression(statement, [&](const TermPtr& expression) { walk.Walk(expression); });
}

void ForEachTerm(const BoundStatement& statement, const std::function<void(const Term&)>& visit) {
    const auto expression = [&](const TermPtr& term) { ForEachTerm(*term, visit); };
    ForEachExpression(statement, expression);
    ForEachQuery(statement, [&](Query& query) {
        for (const Query::Member& member : query.members) ForEachExpression(member.select, expression);
        for (const OrderKey& key : query.orderBy) expression(key.term);
    });
}

TermPtr Changed(const TermPtr& term, const Change& change) {
    // The first operands are visited in a loop.
    std::vector<const TermPtr*> spine{&term};
    while (!(*spine.back())->operands.empty()) spine.push_back(&(*spine.back())->operands.front());
    TermPtr first;
    for (; !spine.empty(); spine.pop_back()) {
        const TermPtr& node = *spine.back();
        Terms operands;
        for (std::size_t i = 0; i < node->operands.size(); ++i)
            operands.push_back(i == 0 ? std::move(first) : Changed(node->operands[i], change));
        first = change(operands == node->operands ? node : WithOperands(*node, std::move(operands)));
    }
    return first;
}

void ChangeExpressions(Select& select, const Change& change) {
    for (TablePtr& table : select.from) table = ChangedJoins(table, change);
    if (select.where) select.where = change(select.where);
    for (TermPtr& key : select.groupBy) key = change(key);
    for (Output& item : select.items) item.term = change(item.term);
    if (select.having) select.having = change(select.having);
    for (OrderKey& key : select.orderBy) key.term = change(key.term);
}

}  // namespace kpTables::sql::bind
