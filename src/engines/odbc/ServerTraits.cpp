#include "engines/odbc/ServerTraits.h"

#include "sql/Names.h"

namespace kpTables::engines::odbc {

namespace {

// Dates in the methods' texts are 2004-3-7, which SQL Server reads by the language of the login unless it is told.
constexpr ServerTraits kServers[] = {
    {"Microsoft SQL Server", "SAVE TRANSACTION kp{1}", "", "ROLLBACK TRANSACTION kp{1}", "SELECT SCOPE_IDENTITY()",
     true, true, "SET LOCK_TIMEOUT {1}", "SET DATEFORMAT ymd", "SELECT @@TRANCOUNT"},
    {"ACCESS", "", "", "", "SELECT @@IDENTITY", false, false, "", "", ""},
    {"PostgreSQL", "SAVEPOINT kp{1}", "RELEASE SAVEPOINT kp{1}", "ROLLBACK TO SAVEPOINT kp{1}", "SELECT lastval()",
     false, false, "SET lock_timeout = {1}", "", ""},
    {"SQLite", "SAVEPOINT kp{1}", "RELEASE SAVEPOINT kp{1}", "ROLLBACK TO SAVEPOINT kp{1}",
     "SELECT last_insert_rowid()", false, false, "PRAGMA busy_timeout = {1}", "", ""},
};
constexpr ServerTraits kStandard = {
    "", "SAVEPOINT kp{1}", "RELEASE SAVEPOINT kp{1}", "ROLLBACK TO SAVEPOINT kp{1}", "", false, false, "", "", ""};

}  // namespace

const ServerTraits& TraitsOf(std::string_view server) noexcept {
    for (const ServerTraits& traits : kServers) {
        if (sql::SameName(server.substr(0, traits.name.size()), traits.name)) return traits;
    }
    return kStandard;
}

}  // namespace kpTables::engines::odbc
