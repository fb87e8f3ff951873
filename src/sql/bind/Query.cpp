#include "sql/bind/Query.h"

#include <algorithm>

#include "sql/Names.h"

namespace kpTables::sql::bind {

std::vector<ResultColumn> Query::Columns() const {
    std::vector<ResultColumn> columns;
    for (const Output& item : members.front().select.items)
        columns.push_back({item.name, item.term->type, item.qualifier});
    columns.resize(columns.size() - clientOrder.hidden.size());
    return columns;
}

bool Query::ComparesRows() const {
    return std::any_of(members.begin() + 1, members.end(),
                       [](const Member& member) { return member.operation != SetOperation::UnionAll; });
}

SourcePtr SourceOf(QueryPtr query) {
    auto source = std::make_shared<Source>();
    for (const Output& item : query->members.front().select.items)
        source->columns.push_back({item.name, item.term->type, false, false, item.label});
    source->query = std::move(query);
    return source;
}

Select SelectFrom(SourcePtr source) {
    Select select;
    for (std::size_t i = 0; i < source->columns.size(); ++i)
        select.items.push_back({ColumnOf(source, i), source->columns[i].name});
    select.from.push_back(TableOf(std::move(source)));
    return select;
}

void LabelItems(std::vector<Output>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        std::string label = items[i].name;
        const auto taken = [&] {
            return std::any_of(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(i),
                               [&](const Output& other) { return SameName(other.label, label); });
        };
        for (int n = 1; taken(); ++n) label = items[i].name + ":" + std::to_string(n);
        items[i].label = std::move(label);
    }
}

Query QueryOf(Select select, QueryUse use) {
    Query query;
    query.use = use;
    if (use == QueryUse::Table) LabelItems(select.items);
    query.members.push_back({SetOperation::Union, std::move(select)});
    return query;
}

void CollectSources(const Table& table, std::vector<SourcePtr>& sources) {
    if (table.source) {
        sources.push_back(table.source);
        return;
    }
    CollectSources(*table.left, sources);
    CollectSources(*table.right, sources);
}

std::vector<SourcePtr> SourcesOf(const Select& select) {
    std::vector<SourcePtr> sources;
    for (const TablePtr& table : select.from) CollectSources(*table, sources);
    return sources;
}

TablePtr TableOf(SourcePtr source) {
    auto table = std::make_shared<Table>();
    table->source = std::move(source);
    return table;
}

TablePtr Joined(JoinMethod method, TablePtr left, TablePtr right, TermPtr on) {
    auto table = std::make_shared<Table>();
    table->method = method;
    table->left = std::move(left);
    table->right = std::move(right);
    table->on = std::move(on);
    return table;
}

}  // namespace kpTables::sql::bind
