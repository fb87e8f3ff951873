#include "sql/sqlite/JoinedTables.h"

#include "sql/sqlite/Names.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

JoinedTables::JoinedTables(TablePtr& from, const Catalog& catalog) { Add(from, catalog); }

void JoinedTables::Add(TablePtr& table, const Catalog& catalog) {
    if (table->kind == TableKind::Join) {
        auto& join = static_cast<JoinedTable&>(*table);
        Add(join.left, catalog);
        Add(join.right, catalog);
        joins_.push_back(&join);
        return;
    }
    const auto* named = table->kind == TableKind::Named ? static_cast<const NamedTable*>(table.get()) : nullptr;
    const CatalogTable* found = named ? catalog.Find(named->name) : nullptr;
    known_ = known_ && found;
    if (found) tables_.push_back({&table, named, found});
}

std::optional<JoinedTables::Meaning> JoinedTables::Lookup(const Column& column) const {
    std::optional<Meaning> meaning;
    for (std::size_t i = 0; i < tables_.size(); ++i) {
        const NamedTable& node = *tables_[i].node;
        if (!column.table.empty() && !SameName(column.table, node.alias.empty() ? node.name : node.alias)) continue;
        const CatalogColumn* found = FindColumn(*tables_[i].table, column.name);
        if (!found) continue;
        if (meaning) return std::nullopt;
        meaning = Meaning{i, found};
    }
    return meaning;
}

}  // namespace kpTables::sql
