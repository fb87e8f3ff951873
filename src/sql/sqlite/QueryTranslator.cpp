#include "sql/sqlite/QueryTranslator.h"

#include <optional>
#include <utility>

#include "sql/sqlite/FromClause.h"
#include "sql/sqlite/GroupLookup.h"
#include "sql/sqlite/SelectText.h"
#include "sql/sqlite/SelectTranslator.h"
#include "sql/sqlite/UnionTranslator.h"

namespace kpTables::sql {

namespace {

void CollectTableNames(const Query& query, std::vector<std::string>& names) {
    for (const auto& member : query.members) {
        if (member.nested) {
            CollectTableNames(*member.nested, names);
            continue;
        }
        for (auto& name : TableNames(member.core->from)) names.push_back(std::move(name));
    }
}

QueryText TranslateSelect(Session& session, const SelectCore& core, const std::vector<OrderItem>& order,
                          const Scope* outer, QueryUse use) {
    SelectTranslator translator(session, core, outer);
    if (!order.empty()) translator.GroupInAnyOrder();
    // Groups that may read a query around this one stay where they see it.
    const auto lookedUp = outer ? std::nullopt : LookUpByGroup(session, translator, core, order);
    QueryText query = PrintSelect(session, lookedUp ? lookedUp->parts : PartsOf(translator), use == QueryUse::Table);
    if (use == QueryUse::Table) query.implied = translator.ImpliedItems();
    if (use == QueryUse::Result || translator.HasTop())
        query.text += lookedUp ? lookedUp->order : translator.OrderText(order);
    query.text += translator.LimitText();
    return query;
}

}  // namespace

QueryText TranslateQuery(Session& session, const Query& query, const Scope* outer, QueryUse use) {
    const auto& first = query.members.front();
    const bool single = query.members.size() == 1;
    QueryText text;
    if (single && first.core)
        text = TranslateSelect(session, *first.core, query.orderBy, outer, use);
    else if (single && query.orderBy.empty())
        return TranslateQuery(session, *first.nested, outer, use);
    else
        text = TranslateUnion(session, query, outer, use);
    if (use == QueryUse::Table) CollectTableNames(query, text.tableNames);
    return text;
}

}  // namespace kpTables::sql
