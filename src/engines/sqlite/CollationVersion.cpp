#include "CollationVersion.h"

#include <unicode/uversion.h>

#include <string>

#include "sql/print/sqlite/FunctionList.h"

namespace kpTables::sqlite {

namespace {

/// The order's data come with ICU; asking the collator itself would load them.
std::string RunningVersion() {
    UVersionInfo version;
    u_getVersion(version);
    char text[U_MAX_VERSION_STRING_LENGTH];
    u_versionToString(version, text);
    return text;
}

void Store(const Database& database, std::string_view text) {
    PreparedStatement statement = database.Prepare(text);
    const std::string version = RunningVersion();
    statement.BindText(1, version);
    statement.Run();
}

}  // namespace

void RecordCollationVersion(const Database& database) {
    database.Run("CREATE TABLE kp_collation (version TEXT)");
    Store(database, "INSERT INTO kp_collation VALUES (?1)");
}

void BringIndexesUpToDate(const Database& database) {
    {
        PreparedStatement recorded = database.Prepare("SELECT version FROM kp_collation");
        if (recorded.Step() && recorded.Text(0) == RunningVersion()) return;
    }
    database.Run("BEGIN IMMEDIATE");
    database.Run("REINDEX " + std::string(sql::print::sqlite::kTextCollation));
    Store(database, "UPDATE kp_collation SET version = ?1");
    database.Run("COMMIT");
}

}  // namespace kpTables::sqlite
