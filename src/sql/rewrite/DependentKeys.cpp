#include <algorithm>
#include <functional>
#include <iterator>
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

using TermVisit = std::function<void(const Term&)>;

/// What is read of the groups.
void ForEachRead(const Select& select, const TermVisit& visit) {
    for (const Output& item : select.items) visit(*item.term);
    if (select.having) visit(*select.having);
    for (const OrderKey& key : select.orderBy)
        if (!key.position) visit(*key.term);
}

bool MayReadInSubQuery(const Select& select) {
    bool found = false;
    ForEachRead(select, [&](const Term& read) {
        found = found || AnyTerm(read, [](const Term& term) {
                    return term.kind == TermKind::InQuery || term.kind == TermKind::Exists ||
                           term.kind == TermKind::ScalarQuery;
                });
    });
    return found;
}

// An engine knows a key that is read by the key's own parameters. The literals are the same in this statement alone.
void ReadKeysThemselves(Select& select, std::vector<int>& fixedLiterals) {
    const auto isParameter = [](const Term& term) { return term.kind == TermKind::Parameter; };
    std::vector<TermPtr> keys;
    std::ranges::copy_if(select.groupBy, std::back_inserter(keys),
                         [&](const TermPtr& key) { return AnyTerm(*key, isParameter); });
    if (keys.empty()) return;
    const auto fix = [&](const Term& same) {
        ForEachTerm(same, [&](const Term& term) {
            if (const auto* parameter = If<ParameterTerm>(&term)) FixLiteral(fixedLiterals, parameter->ordinal);
        });
    };
    ChangeExpressions(select, [&](const TermPtr& expression) {
        return Changed(expression, [&](const TermPtr& term) {
            const auto key = std::ranges::find_if(keys, [&](const TermPtr& each) { return SameTerm(*each, *term); });
            if (key == keys.end() || *key == term) return term;
            fix(*term);
            fix(**key);
            return *key;
        });
    });
}

void AddKeysOf(const Term& read, Select& select) {
    std::vector<const Term*> open = {&read};
    while (!open.empty()) {
        const Term& term = *open.back();
        open.pop_back();
        const bool isKey =
            std::ranges::any_of(select.groupBy, [&](const TermPtr& key) { return SameTerm(*key, term); });
        if (isKey || term.kind == TermKind::Aggregate) continue;
        if (const auto* column = If<ColumnTerm>(&term))
            select.groupBy.push_back(ColumnOf(column->source, column->column));
        for (const TermPtr& operand : term.operands) open.push_back(operand.get());
    }
}

}  // namespace

void DropDependentKeysForNow(BoundStatement& statement) {
    ForEachQuery(statement, [](Query& query) {
        if (query.isCorrelated) return;
        for (Query::Member& member : query.members)
            if (!member.select.groupBy.empty() && !MayReadInSubQuery(member.select)) DropKeys(member.select);
    });
}

void GroupByWhatIsRead(BoundStatement& statement) {
    ForEachQuery(statement, [&](Query& query) {
        for (Query::Member& member : query.members) {
            Select& select = member.select;
            ReadKeysThemselves(select, statement.fixedLiterals);
            if (query.isCorrelated || select.groupBy.empty() || MayReadInSubQuery(select)) continue;
            ForEachRead(select, [&](const Term& read) { AddKeysOf(read, select); });
        }
        for (OrderKey& key : query.orderBy)
            if (key.position) key.term = query.members.front().select.items[*key.position - 1].term;
    });
}

void DropDependentKeys(BoundStatement& statement) {
    ForEachQuery(statement, [](Query& query) {
        for (Query::Member& member : query.members)
            if (!member.select.groupBy.empty()) DropKeys(member.select);
    });
}

}  // namespace kpTables::sql::rewrite
