// The book's order of texts for SQLite.
#pragma once

struct sqlite3;

namespace kpTables::engines::sqlite {

/// Registers the collation of translated texts with a connection.
void RegisterCollation(sqlite3* database);

}  // namespace kpTables::engines::sqlite
