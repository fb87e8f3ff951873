#include "sql/sqlite/SelectText.h"

#include <algorithm>
#include <utility>

#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/SqliteTranslator.h"

namespace kpTables::sql {

namespace {

std::vector<std::string> DistinctNames(const std::vector<OutputItem>& items) {
    std::vector<std::string> names;
    for (const auto& item : items) {
        std::string name = item.name;
        const auto taken = [&] {
            return std::any_of(names.begin(), names.end(), [&](const auto& other) { return SameName(other, name); });
        };
        for (int n = 1; taken(); ++n) name = item.name + ":" + std::to_string(n);
        names.push_back(std::move(name));
    }
    return names;
}

}  // namespace

SelectParts PartsOf(SelectTranslator& translator) {
    return {translator.Distinct(), translator.Distinct(), translator.Items(), translator.Tail()};
}

QueryText PrintSelect(Session& session, const SelectParts& parts, bool named) {
    QueryText query;
    if (named) query.names = DistinctNames(parts.items);
    query.text = parts.distinct ? "SELECT DISTINCT " : "SELECT ";
    for (std::size_t i = 0; i < parts.items.size(); ++i) {
        const OutputItem& item = parts.items[i];
        Term term = ValueTerm(session, item.term);
        if (parts.comparesRows) term = CollatedTerm(std::move(term));
        query.text.append(i ? ", " : "").append(term.text);
        if (named || item.aliased) query.text += " AS " + QuoteForSqlite(named ? query.names[i] : item.name);
        query.columns.push_back({item.name, term.type});
    }
    query.text += parts.tail;
    return query;
}

SelectParts SelectFromQuery(Session& session, const QueryText& query) {
    SelectParts parts;
    const std::string table = session.FreshName();
    for (std::size_t i = 0; i < query.columns.size(); ++i) {
        SourceColumn column{query.columns[i].name, table + "." + QuoteForSqlite(query.names[i]), query.columns[i].type};
        parts.items.push_back({ColumnTerm(column, 0), column.name, false});
    }
    parts.tail = " FROM (" + query.text + ") AS " + table;
    return parts;
}

}  // namespace kpTables::sql
