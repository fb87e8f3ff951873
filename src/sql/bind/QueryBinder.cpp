#include "sql/bind/QueryBinder.h"

#include <optional>
#include <string>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/SqlError.h"
#include "sql/bind/Conversions.h"

namespace kpTables::sql::bind {

namespace {

// TOP n WITH TIES: the rows whose rank is n at most.
Query WithTies(Context& context, const SelectCore& core, const sql::Query& query, Select ranked, QueryUse use) {
    if (ranked.orderBy.empty() || query.skip)
        throw SqlError(ErrorKind::Syntax, Message("WITH TIES needs an ORDER BY, and no OFFSET"), core.top->offset);
    Terms parts{Call("rank", {}, Type::Long)};
    std::vector<bool> descending;
    for (OrderKey& key : ranked.orderBy) {
        parts.push_back(Collated(std::move(key.term)));
        descending.push_back(key.descending);
    }
    ranked.orderBy.clear();
    ranked.windowed = true;
    const std::vector<Output> shown = ranked.items;
    ranked.items.push_back(
        {std::make_shared<WindowTerm>(Type::Long, std::move(parts), 0, std::move(descending), std::nullopt), "rank"});
    const SourcePtr source = SourceOf(std::make_shared<Query>(QueryOf(std::move(ranked), QueryUse::Table)));
    Select select = SelectFrom(source);
    select.items.pop_back();
    for (std::size_t i = 0; i < shown.size(); ++i) {
        select.items[i].name = shown[i].name;
        select.items[i].aliased = shown[i].aliased;
        select.items[i].qualifier = shown[i].qualifier;
    }
    const TermPtr rank = ColumnOf(source, source->columns.size() - 1);
    select.where = Compare(ComparisonOperator::LessEqual, rank,
                           NumberConstant(std::to_string(context.WholeNumber(*core.top)), Type::Long));
    select.orderBy.push_back({rank});
    return QueryOf(std::move(select), use);
}

Query BindSelect(Context& context, const SelectCore& core, const sql::Query& query, const Scope* outer, QueryUse use) {
    SelectBinder binder(context, core, outer);
    if (!query.orderBy.empty()) binder.GroupInAnyOrder();
    if (use == QueryUse::Result || binder.HasTop() || query.skip) binder.BindOrder(query.orderBy);
    if (core.withTies) return WithTies(context, core, query, binder.Take(), use);
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
