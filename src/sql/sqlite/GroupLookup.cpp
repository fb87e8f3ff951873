#include "sql/sqlite/GroupLookup.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>

#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/FromClause.h"
#include "sql/sqlite/Grouping.h"
#include "sql/sqlite/Scope.h"

namespace kpTables::sql {

namespace {

constexpr const char* kLeftJoin = " LEFT JOIN ";
/// SQLite does not turn it around, so it keeps the order of the groups.
constexpr const char* kCrossJoin = " CROSS JOIN ";

const SourceColumn* Meant(const Scope& scope, const Expression& expression) {
    const auto* column = If<Column>(&expression);
    return column ? scope.Lookup(*column) : nullptr;
}

// A name of no column is another item's, and a query may read anything.
bool MayRead(const Scope& scope, const Expression& expression, const std::function<bool(const SourceColumn&)>& which) {
    std::vector<const Expression*> open{&expression};
    while (!open.empty()) {
        const Expression& e = *open.back();
        open.pop_back();
        if (If<InQuery>(&e) || If<Exists>(&e) || If<Subquery>(&e)) return true;
        if (const auto* column = If<Column>(&e)) {
            const auto* meant = scope.Lookup(*column);
            if (!meant || which(*meant)) return true;
        }
        ForEachOperand(e, [&](const Expression& operand) { open.push_back(&operand); });
    }
    return false;
}

bool MayRead(const Source& table, const Scope& scope, const Expression& expression) {
    return MayRead(scope, expression, [&](const SourceColumn& column) { return table.Has(column); });
}

/// The equality of a joined table's counter with a column of the tables before it.
struct LookupJoin {
    const TableJoin* join;
    const SourceColumn* counter;
    const SourceColumn* key;
};

std::optional<LookupJoin> LookupJoinOf(const TableJoin& join, const Scope& scope) {
    const auto* equality = If<Binary>(join.condition);
    if (!equality || equality->op != BinaryOperator::Equal) return std::nullopt;
    const auto* counter = Meant(scope, *equality->left);
    const auto* key = Meant(scope, *equality->right);
    if (!counter || !key) return std::nullopt;
    if (!join.source->Has(*counter)) std::swap(counter, key);
    if (!counter->counter || !join.source->Has(*counter) || join.source->Has(*key) || !IsWhole(key->type))
        return std::nullopt;
    return LookupJoin{&join, counter, key};
}

std::string Looked(const char* join, const std::string& table, const SourceColumn& counter, const std::string& key) {
    return join + table + " ON " + counter.text + " = " + key;
}

// The position of the column among the items, which it joins if it is not there.
std::size_t PositionIn(std::vector<OutputItem>& items, const SourceColumn& column) {
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const auto& item) { return item.term.text == column.text; });
    const auto position = static_cast<std::size_t>(found - items.begin());
    if (found == items.end()) items.push_back({ColumnTerm(column, 0), column.name, false});
    return position;
}

/// Tells the tables that make the groups from those that only add to what is shown of them.
class GroupLookup {
public:
    GroupLookup(SelectTranslator& translator, const SelectCore& core)
        : translator_(translator), core_(core), scope_(translator.Names()), first_(translator.From().firstSource) {}

    bool Finds() {
        FindFirstCounter();
        const auto& joins = translator_.From().joins;
        for (auto join = joins.rbegin(); join != joins.rend(); ++join) {
            const auto lookup = LookupJoinOf(*join, scope_);
            if (lookup && IsOfGroup(*lookup->key) && MakesNoGroups(*join->source))
                lookups_.insert(lookups_.begin(), *lookup);
            else
                kept_.insert(kept_.begin(), &*join);
        }
        return !lookups_.empty();
    }

    SelectParts Join(Session& session, const std::vector<OutputItem>& items) const {
        SelectParts groups;
        std::vector<std::size_t> inside;  // the items of the groups, by their numbers in the SELECT
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (OutsideColumn(*core_.items[i].expression)) continue;
            groups.items.push_back(items[i]);
            inside.push_back(i);
        }
        std::vector<std::size_t> keys;
        for (const auto& lookup : lookups_)
            keys.push_back(IsKey(*lookup.key) ? PositionIn(groups.items, *lookup.key) : 0);
        const bool again = ReadsFirstAgain();
        const std::size_t firstKey = again ? PositionIn(groups.items, *firstCounter_) : 0;
        const FromText& from = translator_.From();
        std::string tables = from.first;
        for (const auto* join : kept_) tables += join->Text();
        if (IsScattered()) translator_.GroupBySorting();
        groups.tail = translator_.Tail(tables);
        SelectParts parts = SelectFromQuery(session, PrintSelect(session, groups, true));
        const std::vector<OutputItem> grouped = std::exchange(parts.items, items);
        for (std::size_t i = 0; i < inside.size(); ++i) parts.items[inside[i]].term = grouped[i].term;
        if (again) parts.tail += Looked(kCrossJoin, from.firstTable, *firstCounter_, grouped[firstKey].term.text);
        for (std::size_t i = 0; i < lookups_.size(); ++i) {
            const auto& [join, counter, key] = lookups_[i];
            const std::string value = IsKey(*key) ? grouped[keys[i]].term.text : key->text;
            parts.tail += Looked(join->optional ? kLeftJoin : kCrossJoin, join->table, *counter, value);
        }
        return parts;
    }

    // A column that is not read for the groups but beside them.
    const SourceColumn* OutsideColumn(const Expression& expression) const {
        const auto* column = Meant(scope_, expression);
        if (!column) return nullptr;
        const bool outside = (ReadsFirstAgain() && first_->Has(*column)) ||
                             std::any_of(lookups_.begin(), lookups_.end(),
                                         [&](const auto& each) { return each.join->source->Has(*column); });
        return outside ? column : nullptr;
    }

private:
    void FindFirstCounter() {
        if (!first_) return;
        for (const SourceColumn& column : first_->columns)
            if (column.counter && IsKey(column)) firstCounter_ = &column;
    }

    bool IsKey(const SourceColumn& column) const {
        const auto& keys = translator_.Keys();
        return std::any_of(keys.begin(), keys.end(), [&](const auto* e) { return Meant(scope_, *e) == &column; });
    }

    // A group has one value of it: a key, or a column of the one row of the first table.
    bool IsOfGroup(const SourceColumn& column) const { return IsKey(column) || (firstCounter_ && first_->Has(column)); }

    // The groups are those of the other tables alone.
    bool MakesNoGroups(const Source& table) const {
        const auto mayRead = [&](const Expression* e) { return MayRead(table, scope_, *e); };
        const auto& keys = translator_.Keys();
        if (std::any_of(keys.begin(), keys.end(), mayRead)) return false;
        if ((core_.where && mayRead(core_.where.get())) || (core_.having && mayRead(core_.having.get()))) return false;
        if (std::any_of(kept_.begin(), kept_.end(), [&](const auto* join) { return mayRead(join->condition); }))
            return false;
        const auto isShown = [&](const SelectItem& item) { return IsColumnOf(table, *item.expression); };
        return std::any_of(core_.items.begin(), core_.items.end(), isShown) &&
               std::all_of(core_.items.begin(), core_.items.end(),
                           [&](const SelectItem& item) { return isShown(item) || !mayRead(item.expression.get()); });
    }

    bool IsColumnOf(const Source& table, const Expression& expression) const {
        const auto* column = Meant(scope_, expression);
        return column && table.Has(*column);
    }

    // A key by which nothing is joined and nothing is found may be scattered over its table: to fetch the rows in the
    // order of its index takes longer than to sort them.
    bool IsScattered() const {
        const auto& keys = translator_.Keys();
        const auto* key = keys.size() == 1 ? Meant(scope_, *keys.front()) : nullptr;
        if (!key || !IsWhole(key->type) || key->counter || kept_.empty()) return false;
        const auto reads = [&](const Expression* e) {
            return e && MayRead(scope_, *e, [&](const SourceColumn& column) { return &column == key; });
        };
        return !reads(core_.where.get()) &&
               std::none_of(kept_.begin(), kept_.end(), [&](const auto* join) { return reads(join->condition); });
    }

    // A lookup by a column of the first table needs its row again, which then also gives what is shown of it: cheaper
    // than to carry all that through the grouping.
    bool ReadsFirstAgain() const {
        return std::any_of(lookups_.begin(), lookups_.end(), [&](const auto& lookup) { return !IsKey(*lookup.key); });
    }

    SelectTranslator& translator_;
    const SelectCore& core_;
    const Scope& scope_;
    const Source* first_;
    const SourceColumn* firstCounter_ = nullptr;  ///< when it is a key
    std::vector<LookupJoin> lookups_;
    std::vector<const TableJoin*> kept_;
};

}  // namespace

std::optional<LookedUpSelect> LookUpByGroup(Session& session, SelectTranslator& translator, const SelectCore& core,
                                            const std::vector<OrderItem>& order) {
    if (core.distinct) return std::nullopt;
    GroupLookup lookup(translator, core);
    if (!lookup.Finds()) return std::nullopt;
    std::vector<std::optional<std::size_t>> positions;
    for (const auto& item : order) {
        positions.push_back(translator.PositionOf(*item.expression));
        if (!positions.back() && !lookup.OutsideColumn(*item.expression)) return std::nullopt;
    }
    LookedUpSelect select{lookup.Join(session, translator.Items()), {}};
    for (std::size_t i = 0; i < order.size(); ++i) {
        const Term key = positions[i] ? select.parts.items[*positions[i] - 1].term
                                      : ColumnTerm(*lookup.OutsideColumn(*order[i].expression), 0);
        select.order.append(i ? ", " : " ORDER BY ").append(CollatedTerm(key).text);
        if (order[i].descending) select.order += " DESC";
    }
    return select;
}

}  // namespace kpTables::sql
