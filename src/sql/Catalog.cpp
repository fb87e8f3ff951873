#include "sql/Catalog.h"

#include <algorithm>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"

namespace kpTables::sql {

const CatalogTable& RequireTable(const Catalog& catalog, const std::string& name, std::size_t offset) {
    if (const auto* table = catalog.Find(name)) return *table;
    throw SqlError(ErrorKind::UnknownTable, Message("unknown table '{1}'", name), offset);
}

const CatalogColumn* FindColumn(const CatalogTable& table, std::string_view name) {
    const auto found = std::find_if(table.columns.begin(), table.columns.end(),
                                    [&](const CatalogColumn& c) { return SameName(c.name, name); });
    return found == table.columns.end() ? nullptr : &*found;
}

const CatalogColumn& RequireColumn(const CatalogTable& table, const std::string& name, std::size_t offset) {
    if (const auto* column = FindColumn(table, name)) return *column;
    throw SqlError(ErrorKind::UnknownColumn, Message("unknown column '{1}' in table '{2}'", name, table.name), offset);
}

const CatalogColumn& RequireStoredColumn(const CatalogTable& table, const std::string& name, std::size_t offset) {
    const CatalogColumn& column = RequireColumn(table, name, offset);
    if (!column.computed) return column;
    if (const auto* stored = column.source.empty() ? nullptr : FindColumn(table, column.source)) return *stored;
    throw SqlError(ErrorKind::Unsupported, Message("the column '{1}' is computed and takes no value", column.name),
                   offset);
}

}  // namespace kpTables::sql
