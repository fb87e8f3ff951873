#include "sql/bind/QueryBinder.h"

#include <optional>
#include <utility>

namespace kpTables::sql::bind {

namespace {

Query BindSelect(Context& context, const SelectCore& core, const sql::Query& query, const Scope* outer, QueryUse use) {
    SelectBinder binder(context, core, outer);
    if (!query.orderBy.empty()) binder.GroupInAnyOrder();
    if (use == QueryUse::Result || binder.HasTop() || query.skip) binder.BindOrder(query.orderBy);
    binder.BindLimit(BindOffset(context, query));
    return QueryOf(binder.Take(), use);
}

}  // namespace

std::optional<RowLimit> BindOffset(Context& context, const sql::Query& query) {
    if (!query.skip) return std::nullopt;
    RowLimit limit;
    limit.skip = context.WholeNumber(*query.skip);
    if (query.fetch) limit.rows = context.WholeNumber(*query.fetch);
    return limit;
}

Query BindQuery(Context& context, const sql::Query& query, const Scope* outer, QueryUse use) {
    const auto& first = query.members.front();
    const bool single = query.members.size() == 1;
    if (single && !first.core && query.orderBy.empty()) return BindQuery(context, *first.nested, outer, use);
    Query bound = single && first.core ? BindSelect(context, *first.core, query, outer, use)
                                       : BindUnion(context, query, outer, use);
    bound.isCorrelated = outer != nullptr;
    return bound;
}

}  // namespace kpTables::sql::bind
