// The tables of a new book.
#pragma once

#include "engines/common/Executor.h"
#include "engines/common/Limits.h"
#include "engines/sqlite/Database.h"
#include "kpTables/Book.h"

namespace kpTables::engines::sqlite {

/// An executor with the database that it works on.
struct OpenedDatabase {
    explicit OpenedDatabase(Database opened, const engines::Limits& limits = {});

    const Database* database;
    engines::ExecutorPtr executor;
};

/// Creates every table of the schema, and the engine's own, or none.
void MakeTables(const OpenedDatabase& empty, HeaderDialect header);

}  // namespace kpTables::engines::sqlite
