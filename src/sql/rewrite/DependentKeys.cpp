#include <algorithm>
#include <numeric>
#include <utility>

#include "sql/rewrite/BoundNames.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

// Where the order of the groups does not matter, the keys that determine most come first.
std::vector<std::size_t> SequenceOf(const Select& select, const Dependencies& dependencies) {
    std::vector<std::size_t> sequence(select.groupBy.size());
    std::iota(sequence.begin(), sequence.end(), 0);
    if (!select.groupsInAnyOrder) return sequence;
    const auto rank = [&](std::size_t i) {
        const auto* column = dependencies.OwnColumn(*select.groupBy[i]);
        if (!column || !IsWhole(column->type)) return 2;
        return column->source->columns[column->column].counter ? 0 : 1;
    };
    std::stable_sort(sequence.begin(), sequence.end(), [&](auto a, auto b) { return rank(a) < rank(b); });
    return sequence;
}

// A key in the condition stays: an index that finds the rows by it may yield them group by group.
bool IsInCondition(const Select& select, const ColumnTerm& column) {
    return select.where && AnyTerm(*select.where, [&](const Term& term) {
               const auto* named = If<ColumnTerm>(&term);
               return named && named->SameAs(column);
           });
}

void DropKeys(Select& select) {
    Dependencies dependencies(select);
    std::vector<bool> needed(select.groupBy.size(), true);
    for (const std::size_t i : SequenceOf(select, dependencies)) {
        const auto* column = dependencies.OwnColumn(*select.groupBy[i]);
        if (!column) continue;
        needed[i] = !dependencies.IsFixed(IdOf(*column)) || IsInCondition(select, *column);
        dependencies.Fix(IdOf(*column));
    }
    std::vector<TermPtr> keys;
    for (std::size_t i = 0; i < needed.size(); ++i)
        if (needed[i]) keys.push_back(std::move(select.groupBy[i]));
    select.groupBy = std::move(keys);
}

}  // namespace

void DropDependentKeys(BoundStatement& statement) {
    ForEachQuery(statement, [](Query& query) {
        for (Query::Member& member : query.members)
            if (!member.select.groupBy.empty()) DropKeys(member.select);
    });
}

}  // namespace kpTables::sql::rewrite
