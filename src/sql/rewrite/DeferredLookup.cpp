#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "sql/rewrite/BoundNames.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

using ColumnTest = std::function<bool(const ColumnTerm&)>;

// A sub-query is assumed to read every column.
bool MayRead(const Term& expression, const ColumnTest& which) {
    return AnyTerm(expression, [&](const Term& term) {
        if (term.kind == TermKind::InQuery || term.kind == TermKind::Exists || term.kind == TermKind::ScalarQuery)
            return true;
        const auto* column = If<ColumnTerm>(&term);
        return column && which(*column);
    });
}

bool MayRead(const Source& table, const Term& expression) {
    return MayRead(expression, [&](const ColumnTerm& column) { return column.source.get() == &table; });
}

/// Tables joined one after the other.
struct Chain {
    TablePtr first;
    std::vector<const Table*> joins;  ///< of one table each

    explicit Chain(const TablePtr& from) : first(from) {
        while (!first->source && first->right->source && first->right->source->table) {
            joins.insert(joins.begin(), first.get());
            first = first->left;
        }
    }
    const Source* FirstTable() const { return first->source && first->source->table ? first->source.get() : nullptr; }
};

const SourcePtr& SourceOfJoin(const Table& join) { return join.right->source; }

/// The equality of a joined table's counter with a column of the tables before it.
struct Lookup {
    const Table* join;
    TermPtr counter;
    TermPtr key;

    const ColumnTerm& Key() const { return As<ColumnTerm>(*key); }
};

std::optional<Lookup> LookupOf(const Table& join) {
    const auto* equality = If<Comparison>(join.on);
    if (!equality || equality->op != ComparisonOperator::Equal) return std::nullopt;
    Lookup lookup{&join, equality->operands[0], equality->operands[1]};
    if (!If<ColumnTerm>(lookup.counter) || !If<ColumnTerm>(lookup.key)) return std::nullopt;
    const auto isOfTable = [&](const TermPtr& term) { return As<ColumnTerm>(*term).source == SourceOfJoin(join); };
    if (!isOfTable(lookup.counter)) std::swap(lookup.counter, lookup.key);
    const auto& counter = As<ColumnTerm>(*lookup.counter);
    if (!isOfTable(lookup.counter) || !counter.source->columns[counter.column].counter) return std::nullopt;
    if (isOfTable(lookup.key) || !IsWhole(lookup.key->type)) return std::nullopt;
    return lookup;
}

// The position of the column among the items; appended if it is not there.
std::size_t PositionIn(std::vector<Output>& items, const TermPtr& column) {
    const auto& wanted = As<ColumnTerm>(*column);
    const auto found = std::find_if(items.begin(), items.end(), [&](const Output& item) {
        const auto* shown = If<ColumnTerm>(item.term);
        return shown && shown->SameAs(wanted);
    });
    const auto position = static_cast<std::size_t>(found - items.begin());
    if (found == items.end()) items.push_back({column, wanted.source->columns[wanted.column].name});
    return position;
}

/// Separates the tables that form the groups from those that only add columns to them.
class DeferredLookup {
public:
    DeferredLookup(Select& select, std::vector<int>& fixedLiterals)
        : select_(select), fixedLiterals_(fixedLiterals), chain_(select.from.front()), first_(chain_.FirstTable()) {}

    void Apply() {
        if (!Finds()) return;
        auto order = OrderOutside();
        if (!order) return;
        Select joined = Join(*order);
        joined.limit = select_.limit;
        select_ = std::move(joined);
    }

private:
    /// A key of the order: an item, from 0, a column beside the groups, or a key of the groups that is not shown.
    struct OutsideKey {
        std::optional<std::size_t> item;
        OrderKey key;
        std::optional<std::size_t> inside =
            std::nullopt;  ///< the position at which the groups output the key for ordering
    };

    bool Finds() {
        FindFirstCounter();
        for (auto join = chain_.joins.rbegin(); join != chain_.joins.rend(); ++join) {
            auto lookup = LookupOf(**join);
            if (lookup && IsOfGroup(lookup->Key()) && MakesNoGroups(*SourceOfJoin(**join)))
                lookups_.insert(lookups_.begin(), std::move(*lookup));
            else
                kept_.insert(kept_.begin(), *join);
        }
        return !lookups_.empty();
    }

    void FindFirstCounter() {
        if (!first_) return;
        for (std::size_t i = 0; i < first_->columns.size(); ++i) {
            const TermPtr column = ColumnOf(chain_.first->source, i);
            if (first_->columns[i].counter && IsKey(As<ColumnTerm>(*column))) firstCounter_ = column;
        }
    }

    bool IsKey(const ColumnTerm& column) const {
        return std::any_of(select_.groupBy.begin(), select_.groupBy.end(), [&](const TermPtr& key) {
            const auto* named = If<ColumnTerm>(key);
            return named && named->SameAs(column);
        });
    }

    // It has one value in a group: a key, or a column of the first table's only row.
    bool IsOfGroup(const ColumnTerm& column) const {
        return IsKey(column) || (firstCounter_ && column.source.get() == first_);
    }

    // The groups depend on the other tables alone.
    bool MakesNoGroups(const Source& table) const {
        const auto mayRead = [&](const TermPtr& term) { return term && MayRead(table, *term); };
        if (std::any_of(select_.groupBy.begin(), select_.groupBy.end(), mayRead)) return false;
        if (mayRead(select_.where) || mayRead(select_.having)) return false;
        if (std::any_of(kept_.begin(), kept_.end(), [&](const Table* join) { return mayRead(join->on); })) return false;
        const auto isShown = [&](const Output& item) {
            const auto* column = If<ColumnTerm>(item.term);
            return column && column->source.get() == &table;
        };
        return std::any_of(select_.items.begin(), select_.items.end(), isShown) &&
               std::all_of(select_.items.begin(), select_.items.end(),
                           [&](const Output& item) { return isShown(item) || !mayRead(item.term); });
    }

    // A lookup by a column of the first table needs its row again, which then supplies its other columns too: cheaper
    // than carrying them through the grouping.
    bool ReadsFirstAgain() const {
        return std::any_of(lookups_.begin(), lookups_.end(),
                           [&](const Lookup& lookup) { return !IsKey(lookup.Key()); });
    }

    // Read outside the grouping.
    bool IsOutside(const Term& term) const {
        const auto* column = If<ColumnTerm>(&term);
        if (!column) return false;
        return (ReadsFirstAgain() && column->source.get() == first_) ||
               std::any_of(lookups_.begin(), lookups_.end(),
                           [&](const Lookup& lookup) { return SourceOfJoin(*lookup.join) == column->source; });
    }

    std::optional<std::size_t> ItemOf(const OrderKey& key) const {
        if (key.position) return *key.position - 1;
        for (std::size_t i = 0; i < select_.items.size(); ++i) {
            if (!SameTerm(*select_.items[i].term, *key.term)) continue;
            for (const TermPtr& same : {select_.items[i].term, key.term})
                ForEachTerm(*same, [this](const Term& term) {
                    if (const auto* literal = If<ParameterTerm>(&term)) FixLiteral(fixedLiterals_, literal->ordinal);
                });
            return i;
        }
        return std::nullopt;
    }

    // Nothing when a key is neither shown nor read outside.
    std::optional<std::vector<OutsideKey>> OrderOutside() const {
        std::vector<OutsideKey> order;
        for (const OrderKey& key : select_.orderBy) {
            order.push_back({ItemOf(key), key});
            const auto* column = If<ColumnTerm>(key.term);
            if (!order.back().item && !IsOutside(*key.term) && !(column && IsKey(*column))) return std::nullopt;
        }
        return order;
    }

    // Rows with equal keys may be scattered over the table if the key is in no join or condition: fetching them by its
    // index takes longer than sorting.
    bool IsScattered() const {
        const auto* key = select_.groupBy.size() == 1 ? If<ColumnTerm>(select_.groupBy.front()) : nullptr;
        if (!key || !IsWhole(key->type) || key->source->columns[key->column].counter || kept_.empty()) return false;
        const auto reads = [&](const TermPtr& term) {
            return term && MayRead(*term, [&](const ColumnTerm& column) { return column.SameAs(*key); });
        };
        return !reads(select_.where) &&
               std::none_of(kept_.begin(), kept_.end(), [&](const Table* join) { return reads(join->on); });
    }

    Select Groups() const {
        Select groups;
        groups.grouped = true;
        groups.groupsInAnyOrder = select_.groupsInAnyOrder;
        groups.sortsGroups = IsScattered();
        groups.where = select_.where;
        groups.groupBy = select_.groupBy;
        groups.having = select_.having;
        TablePtr from = chain_.first;
        for (const Table* join : kept_) from = Joined(join->method, from, join->right, join->on);
        groups.from.push_back(std::move(from));
        return groups;
    }

    // The groups joined with the looked-up tables.
    Select Join(std::vector<OutsideKey>& order) const {
        Select groups = Groups();
        std::vector<std::size_t> inside;  // the groups' items, by their numbers in the SELECT
        for (std::size_t i = 0; i < select_.items.size(); ++i) {
            if (IsOutside(*select_.items[i].term)) continue;
            groups.items.push_back(select_.items[i]);
            inside.push_back(i);
        }
        std::vector<std::size_t> keys;
        for (const Lookup& lookup : lookups_)
            keys.push_back(IsKey(lookup.Key()) ? PositionIn(groups.items, lookup.key) : 0);
        const bool again = ReadsFirstAgain();
        const std::size_t firstKey = again ? PositionIn(groups.items, firstCounter_) : 0;
        for (OutsideKey& each : order)
            if (!each.item && !IsOutside(*each.key.term)) each.inside = PositionIn(groups.items, each.key.term);
        const SourcePtr grouped = SourceOf(std::make_shared<Query>(QueryOf(std::move(groups), QueryUse::Table)));
        Select joined;
        joined.items = select_.items;
        for (std::size_t i = 0; i < inside.size(); ++i) joined.items[inside[i]].term = ColumnOf(grouped, i);
        TablePtr from = TableOf(grouped);
        const auto equal = [](const TermPtr& counter, TermPtr value) {
            return Compare(ComparisonOperator::Equal, counter, std::move(value));
        };
        if (again)
            from = Joined(JoinMethod::Lookup, from, chain_.first, equal(firstCounter_, ColumnOf(grouped, firstKey)));
        for (std::size_t i = 0; i < lookups_.size(); ++i) {
            const Lookup& lookup = lookups_[i];
            const bool optional = lookup.join->method != JoinMethod::Inner;
            from = Joined(optional ? JoinMethod::Left : JoinMethod::Lookup, from, lookup.join->right,
                          equal(lookup.counter, IsKey(lookup.Key()) ? ColumnOf(grouped, keys[i]) : lookup.key));
        }
        joined.from.push_back(std::move(from));
        for (auto& [item, key, inner] : order) {
            if (item) key.term = joined.items[*item].term;
            if (inner) key.term = ColumnOf(grouped, *inner);
            key.position.reset();
            joined.orderBy.push_back(std::move(key));
        }
        return joined;
    }

    Select& select_;
    std::vector<int>& fixedLiterals_;
    Chain chain_;
    const Source* first_;
    TermPtr firstCounter_;  ///< when it is a key
    std::vector<Lookup> lookups_;
    std::vector<const Table*> kept_;
};

}  // namespace

void DeferLookups(BoundStatement& statement) {
    ForEachQuery(statement, [&](Query& query) {
        // Groups that may read an outer query stay where they can see it.
        if (query.isCorrelated || query.members.size() != 1) return;
        if (query.use != QueryUse::Result && query.use != QueryUse::Table) return;
        Select& select = query.members.front().select;
        if (select.distinct || select.windowed || select.groupBy.empty() || select.from.size() != 1) return;
        DeferredLookup(select, statement.fixedLiterals).Apply();
    });
}

}  // namespace kpTables::sql::rewrite
