#include "engines/sqlite/SchemaNote.h"

#include <sqlite3.h>

#include <string>

#include "kpTables/Error.h"

namespace kpTables::engines::sqlite {

std::int64_t SchemaVersion(const Database& database) { return database.IntegerOf("PRAGMA schema_version"); }

namespace {
constexpr std::string_view kMakeNote = "CREATE TABLE IF NOT EXISTS kp_schema (whole INTEGER)";
}

void MakeSchemaNote(const Database& database) { database.Run(kMakeNote); }

std::string SchemaNoteScript() { return std::string(kMakeNote) + ";\n"; }

void WriteSchemaNote(const Database& database, std::int64_t version) {
    database.Run("DELETE FROM kp_schema");
    database.Run("INSERT INTO kp_schema VALUES (" + std::to_string(version) + ")");
}

std::int64_t ReadSchemaNote(const Database& database) {
    constexpr std::int64_t kNone = -1;
    try {
        PreparedStatement note = database.Prepare("SELECT whole FROM kp_schema");
        return note.Step() ? note.Integer(0) : kNone;
    } catch (const DatabaseError&) {
        return kNone;  // The table was dropped.
    }
}

void TryWriteSchemaNote(const Database& database, std::int64_t version) noexcept {
    const char* const name = sqlite3_db_filename(database.Get(), "main");
    if (!name || !*name || database.IsReadOnly() || database.InTransaction()) return;
    try {
        // A connection of its own does not wait, and leaves the settings of the other as they are.
        const Database own(name, SQLITE_OPEN_READWRITE);
        own.Run("BEGIN IMMEDIATE");
        WriteSchemaNote(own, version);
        own.Run("COMMIT");
    } catch (const std::exception&) {
        return;
    }
}

}  // namespace kpTables::engines::sqlite
