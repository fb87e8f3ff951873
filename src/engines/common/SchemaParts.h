// The tables and columns of the schema, compared with a book's.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engines/common/Catalog.h"

namespace kpTables::engines {

/// See Book::MissingParts. A column under its name in SQL Server's dialect is not missing.
std::vector<std::string> MissingParts(const Catalog& catalog);

/// Why a book cannot be opened whose format is not between the oldest that is taken and this program's own; "" when it
/// is.
std::string FormatComplaint(std::int64_t format, std::int64_t oldest);

/// The names, those of the schema's tables first and in its order, the others as they come.
std::vector<std::string> InSchemaOrder(std::vector<std::string> tables);

}  // namespace kpTables::engines
