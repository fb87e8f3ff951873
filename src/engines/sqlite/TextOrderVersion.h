// The version of the text order that a book's indexes were built with.
#pragma once

#include <string>

#include "engines/sqlite/Database.h"

namespace kpTables::engines::sqlite {

/// Writes the version of the program's order into a new book.
void RecordTextOrderVersion(const Database& database);

/// The same as statements, each ended by a semicolon.
std::string TextOrderVersionScript();

/// Rebuilds indexes that another version of the order sorted, inside the caller's transaction; answers whether there
/// were any.
bool SortIndexesAnew(const Database& database);

/// An index in another order would hide rows. A book whose indexes were built with another version gets them rebuilt;
/// one that is open for reading only is refused, with its path, unless its indexes are in this order too.
void BringIndexesUpToDate(const Database& database, const std::string& path);

}  // namespace kpTables::engines::sqlite
