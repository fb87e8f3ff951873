// The tables and columns of the schema, compared with a book's.
#pragma once

#include <string>
#include <vector>

#include "engines/common/Catalog.h"

namespace kpTables::engines {

/// See Book::MissingParts. A column under its name in SQL Server's dialect is not missing.
std::vector<std::string> MissingParts(const Catalog& catalog);

/// The names, those of the schema's tables first and in its order, the others as they come.
std::vector<std::string> InSchemaOrder(std::vector<std::string> tables);

}  // namespace kpTables::engines
