#include "sql/sqlite/GroupLookup.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/FromClause.h"
#include "sql/sqlite/Grouping.h"
#include "sql/sqlite/Scope.h"

namespace kpTables::sql {

namespace {

const SourceColumn* Meant(const Scope& scope, const Expression& expression) {
    const auto* column = If<Column>(&expression);
    return column ? scope.Lookup(*column) : nullptr;
}

bool IsColumnOf(const Source& table, const Scope& scope, const Expression& expression) {
    const auto* column = Meant(scope, expression);
    return column && table.Has(*column);
}

// A name of no column is another item's, and a query may read anything.
bool MayRead(const Source& table, const Scope& scope, const Expression& expression) {
    std::vector<const Expression*> open{&expression};
    while (!open.empty()) {
        const Expression& e = *open.back();
        open.pop_back();
        if (If<InQuery>(&e) || If<Exists>(&e) || If<Subquery>(&e)) return true;
        if (const auto* column = If<Column>(&e)) {
            const auto* meant = scope.Lookup(*column);
            if (!meant || table.Has(*meant)) return true;
        }
        ForEachOperand(e, [&](const Expression& operand) { open.push_back(&operand); });
    }
    return false;
}

/// The equality of the table's counter with a column of the tables before it.
struct LookupJoin {
    const SourceColumn* counter;
    const SourceColumn* key;
};

std::optional<LookupJoin> LookupJoinOf(const LastJoin& join, const Scope& scope) {
    const auto* equality = If<Binary>(join.condition);
    if (!equality || equality->op != BinaryOperator::Equal) return std::nullopt;
    const auto* counter = Meant(scope, *equality->left);
    const auto* key = Meant(scope, *equality->right);
    if (!counter || !key) return std::nullopt;
    if (!join.source->Has(*counter)) std::swap(counter, key);
    if (!counter->counter || !join.source->Has(*counter) || join.source->Has(*key) || !IsWhole(key->type))
        return std::nullopt;
    return LookupJoin{counter, key};
}

// The groups are those of the other tables alone, the joined table only adds to what is shown of them.
bool MakesNoGroups(const Source& table, const SourceColumn& key, const SelectTranslator& translator,
                   const SelectCore& core) {
    const Scope& scope = translator.Names();
    const auto mayRead = [&](const Expression& e) { return MayRead(table, scope, e); };
    const auto& keys = translator.Keys();
    if (std::none_of(keys.begin(), keys.end(), [&](const Expression* e) { return Meant(scope, *e) == &key; }))
        return false;
    if (std::any_of(keys.begin(), keys.end(), [&](const Expression* e) { return mayRead(*e); })) return false;
    if ((core.where && mayRead(*core.where)) || (core.having && mayRead(*core.having))) return false;
    const auto isShown = [&](const SelectItem& item) { return IsColumnOf(table, scope, *item.expression); };
    return std::any_of(core.items.begin(), core.items.end(), isShown) &&
           std::all_of(core.items.begin(), core.items.end(),
                       [&](const SelectItem& item) { return isShown(item) || !mayRead(*item.expression); });
}

SelectParts JoinGroups(Session& session, SelectTranslator& translator, const SelectCore& core, const LookupJoin& on) {
    const LastJoin& last = *translator.Last();
    const Scope& scope = translator.Names();
    const auto& items = translator.Items();
    SelectParts groups;
    std::vector<std::size_t> shown;  // the items of the groups, by their numbers in the SELECT
    std::optional<std::size_t> key;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (IsColumnOf(*last.source, scope, *core.items[i].expression)) continue;
        if (Meant(scope, *core.items[i].expression) == on.key) key = shown.size();
        groups.items.push_back(items[i]);
        shown.push_back(i);
    }
    if (!key) {
        key = shown.size();
        groups.items.push_back({ColumnTerm(*on.key, 0), on.key->name, false});
    }
    groups.tail = translator.Tail(last.before);
    const SelectParts grouped = SelectFromQuery(session, PrintSelect(session, groups, true));
    SelectParts parts;
    parts.items = items;
    for (std::size_t i = 0; i < shown.size(); ++i) parts.items[shown[i]].term = grouped.items[i].term;
    // A cross join, which SQLite does not turn around, keeps the order of the groups.
    parts.tail = grouped.tail + (last.optional ? " LEFT JOIN " : " CROSS JOIN ") + last.table;
    parts.tail += " ON " + on.counter->text + " = " + grouped.items[*key].term.text;
    return parts;
}

}  // namespace

std::optional<LookedUpSelect> LookUpByGroup(Session& session, SelectTranslator& translator, const SelectCore& core,
                                            const std::vector<OrderItem>& order) {
    if (!translator.Last() || core.distinct) return std::nullopt;
    const auto on = LookupJoinOf(*translator.Last(), translator.Names());
    if (!on || !MakesNoGroups(*translator.Last()->source, *on->key, translator, core)) return std::nullopt;
    std::vector<std::size_t> positions;
    for (const auto& item : order) {
        const auto position = translator.PositionOf(*item.expression);
        if (!position) return std::nullopt;
        positions.push_back(*position);
    }
    LookedUpSelect select{JoinGroups(session, translator, core, *on), {}};
    for (std::size_t i = 0; i < order.size(); ++i) {
        const Term& term = select.parts.items[positions[i] - 1].term;
        select.order.append(i ? ", " : " ORDER BY ").append(CollatedTerm(term).text);
        if (order[i].descending) select.order += " DESC";
    }
    return select;
}

}  // namespace kpTables::sql
