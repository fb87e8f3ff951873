// The tables that a FROM clause of joins names, and what a column's name means among them.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "sql/Catalog.h"
#include "sql/Tree.h"

namespace kpTables::sql {

class JoinedTables {
public:
    struct Table {
        TablePtr* place;  ///< in the tree
        const NamedTable* node;
        const CatalogTable* table;
    };
    struct Meaning {
        std::size_t table;
        const CatalogColumn* column;
        bool operator==(const Meaning&) const = default;
    };

    JoinedTables(TablePtr& from, const Catalog& catalog);

    /// False when something else than tables and joins of them stands there.
    bool AreKnown() const noexcept { return known_; }
    const std::vector<Table>& Tables() const noexcept { return tables_; }
    const std::vector<JoinedTable*>& Joins() const noexcept { return joins_; }
    /// nullopt for a name that is unknown or doubtful.
    std::optional<Meaning> Lookup(const Column& column) const;

private:
    void Add(TablePtr& table, const Catalog& catalog);

    std::vector<Table> tables_;
    std::vector<JoinedTable*> joins_;
    bool known_ = true;
};

}  // namespace kpTables::sql
