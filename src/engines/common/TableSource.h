// Which sources of a recordset can be edited: the rows of one table, with columns unchanged.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Catalog.h"
#include "engines/common/RowWriter.h"
#include "sql/Tree.h"

namespace kpTables::engines {

/// A Select of the rows of one table: none of them joined, merged or grouped. What it lists may still be computed.
struct OneTableSelect {
    sql::SelectCore* core;
    const sql::NamedTable* table;
    bool whole;  ///< all rows of the table: no condition, TOP, OFFSET or FETCH
};
/// Nothing for any other statement.
std::optional<OneTableSelect> OneTableSelectOf(sql::Statement& statement);

struct TableSource {
    std::string table;                 ///< as the book spells it
    std::vector<std::string> columns;  ///< in the order of the recordset's fields
    bool wholeTable = false;           ///< all of its rows
    sql::StatementPtr select;          ///< the columns, followed by the row id and, if there is one, the version
};

/// The Select of all columns and rows of a table. Raises SqlError for an unknown table.
TableSource SourceOfTable(std::string_view table, const Catalog& catalog);

/// The source for editing a statement's rows, made from its tree; nothing, and the tree unchanged, when they cannot be
/// edited: several tables, computed or repeated columns, DISTINCT, groups.
std::optional<TableSource> SourceOfSelect(sql::StatementPtr& statement, const Catalog& catalog);

/// What a writer needs of the source's table.
WrittenTable WrittenTableOf(const TableSource& source, const Catalog& catalog);

/// A catalog in which one table has its row id, and its rows' version, as further columns.
class RowIdCatalog : public sql::Catalog {
public:
    RowIdCatalog(const engines::Catalog& catalog, std::string_view table);
    const sql::CatalogTable* Find(std::string_view table) const override;

private:
    const engines::Catalog& catalog_;
    sql::CatalogTable table_;
};

}  // namespace kpTables::engines
