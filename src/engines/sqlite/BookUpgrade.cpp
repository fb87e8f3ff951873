#include "engines/sqlite/BookUpgrade.h"

#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "BookSchema.h"
#include "engines/sqlite/BookCopy.h"
#include "engines/sqlite/BookFile.h"
#include "engines/sqlite/BookTables.h"
#include "engines/sqlite/SchemaNote.h"
#include "engines/sqlite/SqliteDriver.h"
#include "engines/sqlite/TableChange.h"
#include "engines/sqlite/TextOrderVersion.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/print/sqlite/SqliteEngine.h"
#include "text/Path.h"

namespace kpTables::engines::sqlite {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void RefuseUpgrade(const std::string& url, const std::string& complaint,
                                std::int32_t number = static_cast<std::int32_t>(DatabaseErrorNumber::Failure)) {
    throw DatabaseError(number, Message("The book '{1}' cannot be upgraded: {2}", url, complaint));
}

/// The dialect whose names the book's columns have.
HeaderDialect DialectOf(const Database& book) {
    const bool sqlServer = std::any_of(
        std::begin(schema::kSqlServerNames), std::end(schema::kSqlServerNames), [&](const schema::SqlServerName& name) {
            using sql::print::sqlite::QuotedText;
            return book.IntegerOf("SELECT COUNT(*) FROM pragma_table_xinfo(" + QuotedText(name.table) +
                                  ") WHERE name = " + QuotedText(name.sqlServerName) + " COLLATE NOCASE") > 0;
        });
    return sqlServer ? HeaderDialect::SqlServer : HeaderDialect::Jet;
}

void CheckIntegrity(const Database& book) {
    PreparedStatement check = book.Prepare("PRAGMA integrity_check(1)");
    if (check.Step() && check.Text(0) != "ok") {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                            Message("the book is damaged: {1}", check.Text(0)));
    }
}

/// Changes the book inside the open transaction.
std::vector<std::string> Change(const Database& book) {
    std::vector<std::string> changes;
    if (SortIndexesAnew(book)) changes.emplace_back(Message("sorted the indexes of texts anew"));
    const OpenedDatabase wanted(OpenMemory());
    MakeTables(wanted, DialectOf(book));
    for (std::string& change : ChangeTables(book, *wanted.database)) changes.push_back(std::move(change));
    if (FormatOf(book) != schema::kFormat) {
        MarkAsBook(book);
        changes.push_back(Message("noted the format {1}", schema::kFormat));
    }
    if (changes.empty()) return changes;
    CheckIntegrity(book);
    MakeSchemaNote(book);
    WriteSchemaNote(book, SchemaVersion(book));
    return changes;
}

/// An unused name beside the book.
std::string CopyName(const std::string& path) {
    std::string name = path + ".before-upgrade";
    std::error_code error;
    for (int number = 2; fs::exists(fs::symlink_status(text::PathOf(name), error)); ++number) {
        name = path + ".before-upgrade-" + std::to_string(number);
    }
    return name;
}

/// Copies what the file holds before the open transaction is saved: another connection does not see its changes.
std::string CopyBefore(const Database& book, const std::string& path) {
    const Database reader(sqlite3_db_filename(book.Get(), "main"), SQLITE_OPEN_READONLY);
    std::string copy = CopyName(path);
    CopyBook(reader, copy);
    return copy;
}

BookUpgrade Upgrade(const Database& book, const std::string& path, const UpgradeOptions& options) {
    // A table takes the place of another without a word to the views and triggers that name it.
    book.Run("PRAGMA legacy_alter_table = ON");
    book.Run("BEGIN IMMEDIATE");
    BookUpgrade upgrade;
    upgrade.fromFormat = FormatOf(book);
    upgrade.toFormat = schema::kFormat;
    upgrade.changes = Change(book);
    if (upgrade.changes.empty()) {
        book.Run("ROLLBACK");
        return upgrade;
    }
    if (options.copyFirst) upgrade.copy = CopyBefore(book, path);
    book.Run("COMMIT");
    return upgrade;
}

}  // namespace

BookUpgrade UpgradeFile(const std::string& path, const std::string& url, const UpgradeOptions& options) {
    // Closing the database rolls back what an exception left unsaved.
    const SqliteDriver driver(OpenBookOfAnyFormat(path, options.busyTimeout));
    try {
        return Upgrade(driver.GetDatabase(), path, options);
    } catch (const DatabaseError& error) {
        RefuseUpgrade(url, Message("{1}; nothing was changed", error.Description()), error.Number());
    }
}

BookUpgrade UpgradeInMemory(const std::string& /*name*/, const std::string& url, const UpgradeOptions& /*options*/) {
    RefuseUpgrade(url, Message("a book in memory ends with its connection"));
}

}  // namespace kpTables::engines::sqlite
