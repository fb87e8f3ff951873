// A copy of an open book.
#pragma once

#include <string>

#include "engines/sqlite/Database.h"

namespace kpTables::engines::sqlite {

/// Copies a database as it is at one moment into a new book at path, which gets its name when it has been checked and
/// is on the disk. A failure is a DatabaseError, and leaves nothing.
void CopyBook(const Database& database, const std::string& path);

}  // namespace kpTables::engines::sqlite
