#include <algorithm>

#include "sql/rewrite/BoundNames.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

/// The SELECT in FROM that joins tables and shows columns of theirs, and nothing else; null for any other.
const Select* JoinInFrom(const Select& select) {
    if (select.from.size() != 1 || !select.from.front()->source) return nullptr;
    const Source& source = *select.from.front()->source;
    // A query that WITH names may have other readers.
    if (!source.query || !source.common.empty() || source.query->members.size() != 1) return nullptr;
    const Select& inner = source.query->members.front().select;
    const bool isPlain = !inner.distinct && !inner.limit && !inner.where && !inner.grouped && !inner.windowed;
    if (!isPlain || inner.from.size() != 1) return nullptr;
    const bool onlyColumns =
        std::ranges::all_of(inner.items, [](const Output& item) { return If<ColumnTerm>(item.term) != nullptr; });
    const bool onlyTables = std::ranges::all_of(SourcesOf(inner), [](const SourcePtr& each) { return each->table; });
    return onlyColumns && onlyTables ? &inner : nullptr;
}

/// What stands in a sub-query may mean the query in FROM, and the first of a group's rows depends on their order.
bool IsMovable(const Term& term) {
    if (const auto* aggregate = If<Aggregate>(&term))
        return aggregate->function != AggregateFunction::First && aggregate->function != AggregateFunction::Last;
    return term.kind != TermKind::InQuery && term.kind != TermKind::Exists && term.kind != TermKind::ScalarQuery;
}

void Flatten(Select& select) {
    const Select* const inner = select.groupBy.empty() || select.windowed ? nullptr : JoinInFrom(select);
    if (!inner) return;
    bool movable = true;
    ForEachExpression(select, [&](const TermPtr& expression) {
        movable = movable && !AnyTerm(*expression, [](const Term& term) { return !IsMovable(term); });
    });
    if (!movable) return;
    const SourcePtr between = select.from.front()->source;
    const std::vector<Output> shown = inner->items;
    select.from.front() = TablePtr(inner->from.front());
    ChangeExpressions(select, [&](const TermPtr& expression) {
        return Changed(expression, [&](const TermPtr& term) {
            const auto* column = If<ColumnTerm>(term);
            if (!column || column->source != between) return term;
            const std::string& label = between->columns[column->column].label;
            const auto item = std::ranges::find(shown, label, &Output::label);
            const auto& meant = As<ColumnTerm>(*item->term);
            return ColumnOf(meant.source, meant.column, term->offset);
        });
    });
}

}  // namespace

void FlattenGroups(BoundStatement& statement) {
    ForEachQuery(statement, [](Query& query) {
        if (query.isCorrelated) return;
        for (Query::Member& member : query.members) Flatten(member.select);
    });
}

}  // namespace kpTables::sql::rewrite
