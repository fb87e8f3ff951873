#include "engines/sqlite/BookTables.h"

#include <memory>
#include <utility>

#include "BookSchema.h"
#include "engines/common/EngineBook.h"
#include "engines/sqlite/BookFile.h"
#include "engines/sqlite/SchemaNote.h"
#include "engines/sqlite/SqliteDriver.h"
#include "engines/sqlite/TextOrderVersion.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::engines::sqlite {

namespace {

/// The indexes follow the renaming.
void TakeSqlServerNames(const Database& database) {
    using sql::print::sqlite::QuotedName;
    for (const auto& column : schema::kSqlServerNames) {
        database.Run("ALTER TABLE " + QuotedName(column.table) + " RENAME COLUMN " + QuotedName(column.name) + " TO " +
                     QuotedName(column.sqlServerName));
    }
}

}  // namespace

OpenedDatabase::OpenedDatabase(Database opened, const engines::Limits& limits) {
    auto driver = std::make_unique<SqliteDriver>(std::move(opened), limits);
    database = &driver->GetDatabase();
    executor = std::make_shared<engines::Executor>(std::move(driver));
}

void MakeTables(const OpenedDatabase& empty, HeaderDialect header) {
    empty.executor->GetTransaction().Begin();
    MarkAsBook(*empty.database);
    RecordTextOrderVersion(*empty.database);
    MakeSchemaNote(*empty.database);
    engines::CreateBookTables(*empty.executor);
    if (header == HeaderDialect::SqlServer) TakeSqlServerNames(*empty.database);
    WriteSchemaNote(*empty.database, SchemaVersion(*empty.database));
    empty.executor->GetTransaction().Commit();
}

}  // namespace kpTables::engines::sqlite
