#include "engines/sqlite/TextOrderVersion.h"

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/print/sqlite/FunctionList.h"
#include "text/TextOrder.h"

namespace kpTables::engines::sqlite {

namespace {

std::string Version() { return std::to_string(text::kTextOrderVersion); }

constexpr std::string_view kMake = "CREATE TABLE IF NOT EXISTS kp_collation (version TEXT)";
std::string Insert() { return "INSERT INTO kp_collation VALUES ('" + Version() + "')"; }

/// Earlier books have non-numeric texts there; some have no such table.
bool IsUpToDate(const Database& database) {
    if (database.IntegerOf("SELECT COUNT(*) FROM sqlite_schema WHERE name = 'kp_collation'") == 0) return false;
    PreparedStatement recorded = database.Prepare("SELECT version FROM kp_collation");
    return recorded.Step() && recorded.Text(0) == Version();
}

void CheckIndexes(const Database& database, const std::string& path) {
    // It looks up every row in every index.
    PreparedStatement check = database.Prepare("PRAGMA integrity_check(1)");
    if (check.Step() && check.Text(0) == "ok") return;
    throw DatabaseError(
        static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
        Message(
            "The book '{1}' cannot be opened: its indexes have another order of texts; open it for writing once, and they are made anew",
            path));
}

}  // namespace

void RecordTextOrderVersion(const Database& database) {
    database.Run(kMake);
    database.Run("DELETE FROM kp_collation");
    database.Run(Insert());
}

std::string TextOrderVersionScript() { return std::string(kMake) + ";\n" + Insert() + ";\n"; }

bool SortIndexesAnew(const Database& database) {
    if (IsUpToDate(database)) return false;
    database.Run("REINDEX " + std::string(sql::print::sqlite::kTextCollation));
    RecordTextOrderVersion(database);
    return true;
}

void BringIndexesUpToDate(const Database& database, const std::string& path) {
    if (IsUpToDate(database)) return;
    if (database.IsReadOnly()) return CheckIndexes(database, path);
    database.Run("BEGIN IMMEDIATE");
    SortIndexesAnew(database);
    database.Run("COMMIT");
}

}  // namespace kpTables::engines::sqlite
