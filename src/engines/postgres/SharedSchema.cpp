#include "engines/postgres/SharedSchema.h"

#include "engines/postgres/BookLock.h"
#include "kpTables/Error.h"
#include "sql/print/postgres/FunctionList.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

namespace {

/// A newer program's schema has everything that this one needs.
bool IsUpToDate(Database& database) {
    const Result noted = database.Run(
        "SELECT substring(obj_description(oid, 'pg_namespace') FROM '^kpTables ([0-9]+)$')::integer >= " +
        std::to_string(sql::print::postgres::kSharedSchemaVersion) + " FROM pg_namespace WHERE nspname = 'kp'");
    return noted.Rows() > 0 && noted.Value(0, 0) == "t";
}

}  // namespace

bool MakeSharedSchema(Database& database) {
    if (IsUpToDate(database)) return false;
    try {
        // Two programs may come to make it at once.
        database.Run("BEGIN; SELECT pg_advisory_xact_lock(hashtext('kpTables'))");
        if (!IsUpToDate(database)) database.Run(sql::print::postgres::SharedSchemaText());
        database.Run("COMMIT");
        return true;
    } catch (const DatabaseError&) {
        if (database.InTransaction()) RollBackQuietly(database);
        throw;
    }
}

bool HasIndexesUpToDate(Database& database) {
    const std::string ask = "SELECT icu IS NOT DISTINCT FROM " + std::string(kActualIcuVersion) + " FROM kp_book";
    return database.Run(ask).Value(0, 0) == "t";
}

void BringIndexesUpToDate(Database& database, const std::string& book) {
    if (HasIndexesUpToDate(database)) return;
    database.RunAlone("REINDEX SCHEMA " + sql::print::postgres::QuotedName(book));
    database.Run("UPDATE kp_book SET icu = " + std::string(kActualIcuVersion));
}

}  // namespace kpTables::engines::postgres
