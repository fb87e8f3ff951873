// The book's order of texts as SQLite and recordsets call it.
#pragma once

struct sqlite3;

namespace kpTables {
struct TextOrder;
}

namespace kpTables::sqlite {

/// The order for what is found in a recordset.
extern const TextOrder kBookTexts;

/// Makes the collation of the translated texts known to a connection.
void RegisterCollation(sqlite3* database);

}  // namespace kpTables::sqlite
