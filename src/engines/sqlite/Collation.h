// The book's order of texts for SQLite and recordsets.
#pragma once

struct sqlite3;

namespace kpTables {
struct TextOrder;
}

namespace kpTables::engines::sqlite {

/// The order for recordsets.
extern const TextOrder kBookTexts;

/// Registers the collation of translated texts with a connection.
void RegisterCollation(sqlite3* database);

}  // namespace kpTables::engines::sqlite
