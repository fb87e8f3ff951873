// Which version of the order of texts a book's indexes were made with.
#pragma once

#include <string>

#include "engines/sqlite/Database.h"

namespace kpTables::sqlite {

/// Writes the version of the program's order into a new book.
void RecordTextOrderVersion(const Database& database);

/// An index in another order would hide rows. A book whose indexes were made with another version has them made anew;
/// one that is open for reading only is refused, with its path, unless its indexes are in this order as well.
void BringIndexesUpToDate(const Database& database, const std::string& path);

}  // namespace kpTables::sqlite
