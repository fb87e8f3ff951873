// The tables of an open book, read from the server's catalog.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Catalog.h"
#include "engines/postgres/Database.h"
#include "sql/Translation.h"

namespace kpTables::engines::postgres {

class ServerCatalog final : public engines::Catalog {
public:
    explicit ServerCatalog(Database& database) noexcept : database_(database) {}

    TableInfo Describe(std::string_view table) const override;
    std::vector<std::string> TableNames() const override;
    /// A counter, or a whole number as the only key.
    std::string RowIdColumn(std::string_view table) const override;
    std::string RowIdName(const sql::CatalogTable& table) const override { return table.rowId; }
    /// The transaction that wrote the row.
    std::string RowVersionName() const override { return "xmin"; }
    /// The column's default as the change converts it, in the server's words; "" for none.
    std::string ConvertedDefault(const sql::ColumnChange& change) const;

private:
    std::optional<sql::CatalogTable> ReadTable(std::string_view name) const override;
    std::int64_t ReadVersion() override;

    Database& database_;
};

}  // namespace kpTables::engines::postgres
