// Which version of the text order a book's indexes were made with.
#pragma once

#include "Database.h"

namespace kpTables::sqlite {

/// Writes the running version into a new book.
void RecordCollationVersion(const Database& database);

/// Orders the indexes anew when the book comes from a program with another version of the order: an index in the wrong
/// order would hide rows.
void BringIndexesUpToDate(const Database& database);

}  // namespace kpTables::sqlite
