// A catalog of a few tables, written out.
#pragma once

#include <string_view>
#include <vector>

#include "sql/Catalog.h"

namespace kpTables::sql::test {

class TestCatalog : public Catalog {
public:
    TestCatalog();
    const CatalogTable* Find(std::string_view table) const override;
    const std::vector<CatalogTable>& Tables() const noexcept { return tables_; }

private:
    std::vector<CatalogTable> tables_;
};

}  // namespace kpTables::sql::test
