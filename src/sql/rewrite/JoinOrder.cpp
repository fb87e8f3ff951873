#include "sql/rewrite/BoundNames.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

TablePtr Ordered(const TablePtr& table) {
    if (table->source) return table;
    const bool deeper = !table->right->source && table->left->source;
    const bool turns = table->method == JoinMethod::Right || (table->method == JoinMethod::Inner && deeper);
    const JoinMethod method = table->method == JoinMethod::Right ? JoinMethod::Left : table->method;
    TablePtr left = Ordered(table->left);
    TablePtr right = Ordered(table->right);
    return turns ? Joined(method, right, left, table->on) : Joined(method, left, right, table->on);
}

}  // namespace

void OrderJoins(BoundStatement& statement) {
    ForEachQuery(statement, [](Query& query) {
        for (Query::Member& member : query.members)
            for (TablePtr& table : member.select.from) table = Ordered(table);
    });
}

}  // namespace kpTables::sql::rewrite
