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

bool IsFixed(const Source& table, const Dependencies& dependencies) {
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        if (table.columns[i].counter && dependencies.IsFixed({&table, i})) return true;
    return false;
}

// A source's row that the earlier sources' rows determine needs no key.
std::vector<OrderKey> RowIdsOf(const Select& select) {
    Dependencies dependencies(select);
    std::vector<OrderKey> order;
    for (const SourcePtr& source : SourcesOf(select)) {
        // A query's rows have no ids.
        if (!source->table) return {};
        if (IsFixed(*source, dependencies)) continue;
        order.push_back({std::make_shared<RowIdTerm>(source), kAscending, std::nullopt, kImplied});
        dependencies.FixRow(*source);
    }
    return order;
}

std::vector<OrderKey> OrderOf(const Select& select) {
    if (select.distinct) return PositionsOf(select);
    if (!select.grouped) return RowIdsOf(select);
    std::vector<OrderKey> order;
    for (const TermPtr& key : select.groupBy) order.push_back({key, kAscending, std::nullopt, kImplied});
    return order;
}

bool ComparesRows(const Query& query) {
    for (const Query::Member& member : query.members)
        if (&member != &query.members.front() && !member.all) return true;
    return false;
}

void Order(Query& query) {
    if (!query.orderBy.empty()) return;
    Select& first = query.members.front().select;
    if (query.members.size() == 1) {
        const bool isSeen = query.use == QueryUse::Result || first.limit;
        if (isSeen && first.orderBy.empty()) first.orderBy = OrderOf(first);
    } else if (query.use == QueryUse::Result && ComparesRows(query)) {
        query.orderBy = PositionsOf(first);
    }
}

}  // namespace

void ImplyOrder(BoundStatement& statement) { ForEachQuery(statement, Order); }

}  // namespace kpTables::sql::rewrite
