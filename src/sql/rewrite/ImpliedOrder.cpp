#include <algorithm>
#include <optional>
#include <utility>

#include "sql/rewrite/BoundNames.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

constexpr bool kAscending = false;
constexpr bool kImplied = true;

std::vector<OrderKey> PositionsOf(const Select& select) {
    std::vector<OrderKey> order;
    for (std::size_t i = 0; i < select.items.size(); ++i)
        order.push_back({select.items[i].term, kAscending, i + 1, kImplied});
    return order;
}

std::optional<std::size_t> CounterOf(const Source& table) {
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        if (table.columns[i].counter) return i;
    return std::nullopt;
}

/// The row ids of joined tables, from left to right.
class RowIds {
public:
    explicit RowIds(const Select& select) : dependencies_(select) {
        for (const TablePtr& table : select.from) Add(*table, false);
    }

    std::vector<OrderKey> Take() && { return isOpen_ ? std::vector<OrderKey>() : std::move(order_); }

private:
    void Add(const Table& table, bool isNested) {
        if (table.source) return AddSource(table.source, isNested);
        Add(*table.left, isNested);
        Add(*table.right, isNested || !table.right->source);
    }

    void AddSource(const SourcePtr& source, bool isNested) {
        // The rows of a query have no ids.
        if (!source->table) isOpen_ = true;
        const auto counter = CounterOf(*source);
        // A row that the rows before it determine needs no key of its own.
        if (isOpen_ || (counter && dependencies_.IsFixed({source.get(), *counter}))) return;
        // Of a join in parentheses only the columns can be named.
        if (isNested && !counter) return;
        TermPtr key = isNested ? ColumnOf(source, *counter) : std::make_shared<RowIdTerm>(source);
        order_.push_back({std::move(key), kAscending, std::nullopt, kImplied});
        dependencies_.FixRow(*source);
    }

    Dependencies dependencies_;
    std::vector<OrderKey> order_;
    bool isOpen_ = false;
};

std::vector<OrderKey> OrderOf(const Select& select) {
    if (select.distinct) return PositionsOf(select);
    // A cross-tab without row headings is one group of all rows.
    if (!select.grouped) return ShowsAggregate(select) ? std::vector<OrderKey>() : RowIds(select).Take();
    std::vector<OrderKey> order;
    for (const TermPtr& key : select.groupBy) order.push_back({key, kAscending, std::nullopt, kImplied});
    return order;
}

void Order(Query& query) {
    if (!query.orderBy.empty()) return;
    Select& first = query.members.front().select;
    if (query.members.size() == 1) {
        const bool isSeen = query.use == QueryUse::Result || first.limit;
        if (isSeen && first.orderBy.empty()) first.orderBy = OrderOf(first);
    } else if (query.use == QueryUse::Result && query.ComparesRows()) {
        query.orderBy = PositionsOf(first);
    }
}

bool HasKey(const std::vector<OrderKey>& order, const OrderKey& key) {
    return std::ranges::any_of(order, [&](const OrderKey& known) {
        return (known.position && known.position == key.position) || SameTerm(*known.term, *key.term);
    });
}

/// Rows that the statement's own keys leave equal come as if it had none.
void BreakTies(Query& query) {
    Select& first = query.members.front().select;
    const bool isUnion = query.members.size() > 1;
    std::vector<OrderKey>& order = isUnion ? query.orderBy : first.orderBy;
    if (order.empty() || (isUnion && !query.ComparesRows())) return;
    for (OrderKey& key : isUnion ? PositionsOf(first) : OrderOf(first)) {
        key.isImplied = false;
        if (!HasKey(order, key)) order.push_back(std::move(key));
    }
}

}  // namespace

void ImplyTies(BoundStatement& statement) { ForEachQuery(statement, BreakTies); }

void ImplyOrder(BoundStatement& statement) { ForEachQuery(statement, Order); }

}  // namespace kpTables::sql::rewrite
