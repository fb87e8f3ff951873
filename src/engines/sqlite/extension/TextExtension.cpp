// A book's order of texts and the functions of its statements as an extension for other programs over SQLite: the
// same bodies as the engine's.
#include <sqlite3.h>

#include <exception>
#include <string>

#include "engines/sqlite/BookFile.h"
#include "engines/sqlite/Collation.h"
#include "engines/sqlite/Failure.h"
#include "engines/sqlite/Functions.h"
#include "text/TextOrder.h"

const sqlite3_api_routines* sqlite3_api = nullptr;

namespace kpTables::engines::sqlite {

namespace {

/// The first column of the first row as a text, empty when there is none.
std::string TextOf(sqlite3* database, const char* query) {
    sqlite3_stmt* statement = nullptr;
    Check(database, sqlite3_prepare_v2(database, query, -1, &statement, nullptr));
    std::string found;
    if (sqlite3_step(statement) == SQLITE_ROW) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
        if (text) found = text;
    }
    Check(database, sqlite3_finalize(statement));
    return found;
}

bool IsBook(sqlite3* database) { return TextOf(database, "PRAGMA application_id") == std::to_string(kApplicationId); }

/// What keeps the connection from reading its book rightly; empty when nothing does.
std::string ComplaintAbout(sqlite3* database) {
    const std::string own = std::to_string(text::kTextOrderVersion);
    std::string its = "none";
    if (!TextOf(database, "SELECT 1 FROM sqlite_schema WHERE name = 'kp_collation'").empty())
        its = TextOf(database, "SELECT version FROM kp_collation");
    if (its == own) return {};
    return "the book's order of texts has the version " + its + ", this extension's is " + own +
           "; use the kpbook of this version on the book once, or the extension of the book's version";
}

/// Other programs neither keep the book's rules nor close its months: they may read.
void AllowReadingOnly(sqlite3* database) {
    Check(database, sqlite3_exec(database, "PRAGMA query_only = ON", nullptr, nullptr, nullptr));
}

std::string Load(sqlite3* database) {
    if (IsBook(database)) {
        if (std::string complaint = ComplaintAbout(database); !complaint.empty()) return complaint;
        AllowReadingOnly(database);
    }
    RegisterCollation(database);
    RegisterFunctions(database);
    return {};
}

}  // namespace

}  // namespace kpTables::engines::sqlite

/// What SQLite calls: the name follows from the file's.
extern "C" __attribute__((visibility("default"))) int sqlite3_kptext_init(sqlite3* database, char** message,
                                                                          const sqlite3_api_routines* api) {
    sqlite3_api = api;
    std::string complaint;
    try {
        complaint = kpTables::engines::sqlite::Load(database);
    } catch (const std::exception& error) {
        complaint = error.what();
    }
    if (complaint.empty()) return SQLITE_OK;
    if (message) *message = sqlite3_mprintf("%s", complaint.c_str());
    return SQLITE_ERROR;
}
