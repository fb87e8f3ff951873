// How a column's type is kept in a book's schema.
#pragma once

#include <string>
#include <string_view>

#include "sql/Catalog.h"
#include "sql/Tree.h"

namespace kpTables::sql::print::postgres {

/// The type text of a column: kp.currency, kp."text(20)".
std::string DeclaredType(const TypeName& type);

/// The column of that type, as the server's catalog names it: "currency", "text(20)", "int4".
CatalogColumn ColumnOfDeclaredType(std::string_view name, std::string_view typeName);

}  // namespace kpTables::sql::print::postgres
