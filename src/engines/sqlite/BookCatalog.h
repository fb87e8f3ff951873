// The tables of an open book, read from SQLite.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Catalog.h"
#include "engines/sqlite/Database.h"

namespace kpTables::engines::sqlite {

class BookCatalog final : public engines::Catalog {
public:
    explicit BookCatalog(const Database& database) noexcept : database_(database) {}

    TableInfo Describe(std::string_view table) const override;
    std::vector<std::string> TableNames() const override;
    /// A counter, or a whole number as the only key.
    std::string RowIdColumn(std::string_view table) const override;
    std::string RowIdName(const sql::CatalogTable& table) const override;

private:
    std::optional<sql::CatalogTable> ReadTable(std::string_view name) const override;
    std::int64_t ReadVersion() override;

    const Database& database_;
    PreparedStatement readVersion_;
};

}  // namespace kpTables::engines::sqlite
