// How a column's type is kept in a book's schema.
#pragma once

#include <string>
#include <string_view>

#include "sql/Catalog.h"
#include "sql/Tree.h"

namespace kpTables::sql::print::sqlite {

/// The type text of a column, with the collation of a text one: "CURRENCY", "TEXT(20) COLLATE KPTEXT".
/// soleKey: the column alone is the table's primary key; a whole number then becomes SQLite's row id.
std::string DeclaredType(const TypeName& type, bool soleKey);

/// The column of that declared type (the collation is no part of what SQLite reports as the type).
/// autoincrement: the schema says AUTOINCREMENT for it, which only a COUNTER has.
CatalogColumn ColumnOfDeclaredType(std::string_view name, std::string_view declaredType, bool autoincrement);

/// An expression that names the declared type, which column holds, as a server does: int, nvarchar and so on.
std::string TypeNameOfDeclared(std::string_view column);

}  // namespace kpTables::sql::print::sqlite
