#include <algorithm>
#include <optional>
#include <utility>

#include "sql/Names.h"
#include "sql/rewrite/BoundNames.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

/// Whether the item is the column that holds the row id.
bool ShowsRowId(const Output& item, const RowIdTerm& rowId) {
    const auto* column = If<ColumnTerm>(item.term);
    if (!column || column->source != rowId.source || rowId.source->table->rowId.empty()) return false;
    return SameName(column->source->columns[column->column].name, rowId.source->table->rowId);
}

/// The item that shows the key's value, from 0.
std::optional<std::size_t> ItemOf(const OrderKey& key, const std::vector<Output>& items) {
    if (key.position) return *key.position - 1;
    const auto* rowId = If<RowIdTerm>(key.term);
    const auto found = std::ranges::find_if(items, [&](const Output& item) {
        return rowId ? ShowsRowId(item, *rowId) || SameTerm(*item.term, *rowId) : SameTerm(*item.term, *key.term);
    });
    if (found == items.end()) return std::nullopt;
    return static_cast<std::size_t>(found - items.begin());
}

/// Further items would make other rows of these.
bool TakesNoItems(const Query& query) { return query.members.size() > 1 || query.members.front().select.comparesRows; }

}  // namespace

void LeaveTextOrder(BoundStatement& statement) {
    if (!statement.query) return;
    Query& query = *statement.query;
    Select& first = query.members.front().select;
    if (query.limit || first.limit) return;
    std::vector<OrderKey>& order = query.orderBy.empty() ? first.orderBy : query.orderBy;
    const auto isText = [](const OrderKey& key) { return key.term->type == Type::Text; };
    const auto isShown = [&](const OrderKey& key) { return ItemOf(key, first.items).has_value(); };
    if (std::ranges::none_of(order, isText)) return;
    if (TakesNoItems(query) && !std::ranges::all_of(order, isShown)) return;
    for (const OrderKey& key : std::exchange(order, {})) {
        auto item = ItemOf(key, first.items);
        if (!item) {
            item = first.items.size();
            first.items.push_back({key.term, ""});
            query.clientOrder.hidden.push_back(key.term->type);
        }
        query.clientOrder.keys.push_back({*item, key.descending});
    }
}

}  // namespace kpTables::sql::rewrite
