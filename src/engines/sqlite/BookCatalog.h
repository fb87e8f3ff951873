// The tables of an open book.
#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "Database.h"
#include "kpTables/Sqlite.h"
#include "sql/Catalog.h"

namespace kpTables::sqlite {

/// The field type that a column's type gives; Empty for Unknown and Null.
VarType FieldType(sql::Type type) noexcept;

/// What the file says about its tables, read when it is asked for.
class BookCatalog : public sql::Catalog {
public:
    explicit BookCatalog(const Database& database) noexcept : database_(database) {}

    const sql::CatalogTable* Find(std::string_view table) const override;
    /// With keys and defaults; without computed columns.
    TableInfo Describe(std::string_view table) const;
    /// The column that is SQLite's row id, a counter or a whole number as the only key; "" when there is none.
    std::string RowIdColumn(std::string_view table) const;
    /// Of all tables, in the order in which they were made.
    std::vector<std::string> TableNames() const;

    /// True when the schema has changed since it was read: then all of it will be read anew.
    bool Refresh();

private:
    const Database& database_;
    mutable std::list<sql::CatalogTable> known_;
    PreparedStatement readVersion_;
    std::int64_t version_ = -1;
};

}  // namespace kpTables::sqlite
