#include "SqliteCppDatabase.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include "engines/sqlite/Collation.h"

namespace kpTables::bench {

SqliteCppDatabase::SqliteCppDatabase(const std::string& path)
    : database_(std::make_unique<SQLite::Database>(path, SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX)) {
    engines::sqlite::RegisterCollation(database_->getHandle());
}

SqliteCppDatabase::~SqliteCppDatabase() = default;

void SqliteCppDatabase::Run(const std::string& text) { database_->exec(text); }

Cell SqliteCppDatabase::First(const std::string& text, const char* column) {
    SQLite::Statement query(*database_, text);
    if (!query.executeStep()) return NoRow();
    const SQLite::Column cell = query.getColumn(column);
    if (cell.isNull()) return NullCell();
    if (cell.isInteger()) return std::int64_t{cell.getInt64()};
    if (cell.isFloat()) return cell.getDouble();
    return cell.getString();
}

}  // namespace kpTables::bench
