#include "sql/bind/QueryBinder.h"

#include <utility>

namespace kpTables::sql::bind {

namespace {

Query BindSelect(Context& context, const SelectCore& core, const std::vector<OrderItem>& order, const Scope* outer,
                 QueryUse use) {
    SelectBinder binder(context, core, outer);
    if (!order.empty()) binder.GroupInAnyOrder();
    if (use == QueryUse::Result || binder.HasTop()) binder.BindOrder(order);
    binder.BindLimit();
    return QueryOf(binder.Take(), use);
}

}  // namespace

Query BindQuery(Context& context, const sql::Query& query, const Scope* outer, QueryUse use) {
    const auto& first = query.members.front();
    const bool single = query.members.size() == 1;
    if (single && !first.core && query.orderBy.empty()) return BindQuery(context, *first.nested, outer, use);
    Query bound = single && first.core ? BindSelect(context, *first.core, query.orderBy, outer, use)
                                       : BindUnion(context, query, outer, use);
    bound.isCorrelated = outer != nullptr;
    return bound;
}

}  // namespace kpTables::sql::bind
