// What the front end asks an engine about the tables of its book.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "sql/Type.h"

namespace kpTables::sql {

struct CatalogColumn {
    std::string name;
    Type type = Type::Unknown;
    bool counter = false;
    int length = 0;           ///< characters that a text may have; 0 for any number
    bool computed = false;    ///< not stored: a star does not list it
    std::string source = {};  ///< of a computed one: the stored column that it is an alias of; "" when it is none
    int precision = 0;        ///< of DECIMAL(p,s), a Currency: its digits; 0 for any other
    int scale = 0;            ///< of DECIMAL(p,s): those behind the point
};

struct CatalogTable {
    std::string name;  ///< as the engine spells it
    std::vector<CatalogColumn> columns;
};

class Catalog {
public:
    virtual ~Catalog() = default;
    /// The table of that name, ignoring case, or nullptr. Stays valid until the schema changes.
    virtual const CatalogTable* Find(std::string_view table) const = 0;
};

/// The table, or SqlError UnknownTable.
const CatalogTable& RequireTable(const Catalog& catalog, const std::string& name, std::size_t offset);
/// The column of that name, ignoring case, or nullptr.
const CatalogColumn* FindColumn(const CatalogTable& table, std::string_view name);
/// The column, or SqlError UnknownColumn.
const CatalogColumn& RequireColumn(const CatalogTable& table, const std::string& name, std::size_t offset);
/// The stored column that a write to the name goes to; SqlError Unsupported when there is none.
const CatalogColumn& RequireStoredColumn(const CatalogTable& table, const std::string& name, std::size_t offset);

}  // namespace kpTables::sql
