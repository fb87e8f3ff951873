#include "engines/sqlite/BookFile.h"

#include <sqlite3.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "BookSchema.h"
#include "engines/common/SchemaParts.h"
#include "engines/sqlite/Failure.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "text/Path.h"

namespace kpTables::engines::sqlite {

namespace {

namespace fs = std::filesystem;

/// In KiB. A month-end closing reads each page once: a larger cache would only cost memory.
constexpr int kCacheKibibytes = 16384;
/// In bytes.
constexpr int kLongestText = 100'000'000;

/// The name for SQLite: absolute, so that it is never taken for a URI or an in-memory database.
std::string AbsoluteName(const std::string& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(text::PathOf(path), error);
    const std::u8string name = absolute.u8string();
    return error ? path : std::string(name.begin(), name.end());
}

[[noreturn]] void RefuseFile(const std::string& path, const std::string& complaint,
                             DatabaseErrorNumber number = DatabaseErrorNumber::Failure) {
    throw DatabaseError(static_cast<std::int32_t>(number),
                        Message("The book '{1}' cannot be opened: {2}", path, complaint));
}

void CheckName(const std::string& path) {
    if (path.empty() || path.find('\0') != path.npos)
        RefuseFile(path, Message("the path is empty or holds a NUL character"));
}

void CheckIsFile(const std::string& path) {
    CheckName(path);
    std::error_code error;
    const fs::file_status status = fs::status(text::PathOf(path), error);
    if (status.type() == fs::file_type::not_found) RefuseFile(path, Message("there is no such file"));
    if (status.type() == fs::file_type::directory) RefuseFile(path, Message("it is a directory"));
    if (status.type() == fs::file_type::none) RefuseFile(path, SystemMessage(error));
    if (status.type() != fs::file_type::regular) RefuseFile(path, Message("it is not a regular file"));
    if (fs::file_size(text::PathOf(path), error) == 0)
        RefuseFile(path, Message("the file is empty and so is not a book"));
}

void Configure(const Database& database, std::chrono::milliseconds busyTimeout) {
    sqlite3* const handle = database.Get();
    Check(handle, sqlite3_busy_timeout(handle, static_cast<int>(busyTimeout.count())));
    // A damaged or malicious file must do no more than give wrong values.
    Check(handle, sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr));
    Check(handle, sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr));
    // A function whose text grows beyond it ends with an error, rather than to run for minutes.
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kLongestText);
    database.Run("PRAGMA cache_size = -" + std::to_string(kCacheKibibytes));
    database.Run("PRAGMA foreign_keys = OFF");
}

/// Makes what a book is told survive a power failure.
void MakeDurable(const Database& database) {
    database.Run("PRAGMA journal_mode = WAL");
    // A bill that was entered is on the disk when the call returns.
    database.Run("PRAGMA synchronous = FULL");
}

/// SQLite accepts a truncated last page.
void CheckIsComplete(const Database& database, const std::string& path) {
    const auto expected = database.IntegerOf("PRAGMA page_count") * database.IntegerOf("PRAGMA page_size");
    std::error_code error;
    // With a write-ahead log, a file may be shorter than its book.
    const auto logged = fs::file_size(text::PathOf(path + "-wal"), error);
    if (!error && logged > 0) return;
    const auto size = fs::file_size(text::PathOf(path), error);
    if (!error && static_cast<std::int64_t>(size) < expected)
        RefuseFile(path, Message("it is damaged: the file's end is missing"));
}

/// Reads the header and the schema, so that a file that is no book, or damaged, is refused at once.
void CheckIsBook(const Database& database, const std::string& path, std::int32_t oldestFormat = schema::kFormat) {
    const std::int64_t application = database.IntegerOf("PRAGMA application_id");
    if (application != kApplicationId) RefuseFile(path, Message("the file is a SQLite database, but not a book"));
    const std::string complaint = engines::FormatComplaint(FormatOf(database), oldestFormat);
    if (!complaint.empty()) RefuseFile(path, complaint);
    database.IntegerOf("SELECT COUNT(*) FROM sqlite_schema");
    CheckIsComplete(database, path);
}

/// A file's name as a URI, with SQLite's options for opening it.
std::string Uri(const std::string& name, const char* options) {
    std::string uri = "file:";
    for (const char c : name) {
        if (c == '%' || c == '?' || c == '#') {
            char escaped[4];
            std::snprintf(escaped, sizeof escaped, "%%%02X", static_cast<unsigned char>(c));
            uri += escaped;
        } else {
            uri += c;
        }
    }
    return uri + options;
}

/// What is to be opened, and the earliest format that is taken.
struct Opening {
    const std::string& path;
    const BookOptions& options;
    std::int32_t oldestFormat;
};

/// Opens a book and prepares the connection. alone: without the files beside the book, which other programs would need
/// to use it at the same time; code tells why it cannot be opened.
Database OpenChecked(Database database, const Opening& opening, bool alone, int& code) {
    const auto& [path, options, oldestFormat] = opening;
    try {
        // First, because other settings read the schema.
        if (alone) database.Run("PRAGMA locking_mode = EXCLUSIVE");
        Configure(database, options.busyTimeout);
        CheckIsBook(database, path, oldestFormat);
        if (options.readOnly && alone) {
            Check(database.Get(), sqlite3_db_config(database.Get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr));
            database.RefuseChanges();
        }
        if (!options.readOnly) MakeDurable(database);
        return database;
    } catch (const DatabaseError&) {
        code = sqlite3_extended_errcode(database.Get());
        throw;
    }
}

/// Whether a book could not be opened for want of the files beside it: on a full disk, or in a folder that cannot be
/// written.
bool LacksFilesBeside(int code) noexcept {
    switch (code) {
        case SQLITE_IOERR_SHMOPEN:
        case SQLITE_IOERR_SHMSIZE:
        case SQLITE_IOERR_SHMMAP:
            return true;
        default:
            break;
    }
    constexpr int kPrimaryMask = 0xFF;
    const int primary = code & kPrimaryMask;
    return primary == SQLITE_CANTOPEN || primary == SQLITE_READONLY || primary == SQLITE_FULL;
}

/// Opens a book that no other program has open. It keeps the index of the log in memory.
Database OpenAlone(const std::string& name, const Opening& opening) {
    constexpr bool kAlone = true;
    int code = SQLITE_OK;
    try {
        Database database(name, SQLITE_OPEN_READWRITE);
        if (!database.IsReadOnly()) return OpenChecked(std::move(database), opening, kAlone, code);
    } catch (const DatabaseError&) {
        if (!opening.options.readOnly || !LacksFilesBeside(code)) throw;
    }
    // In a folder that cannot be written, no lock can be had, and none is needed: a program that writes the book has
    // its files beside it, and these would have been found.
    std::error_code error;
    const auto logged = fs::file_size(text::PathOf(name + "-wal"), error);
    if (error || logged == 0) return OpenChecked(OpenUnchanging(name), opening, !kAlone, code);
    return OpenChecked(Database(Uri(name, "?vfs=unix-none"), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI), opening, kAlone,
                       code);
}

Database OpenWithFilesBeside(const std::string& name, const Opening& opening, int& code) {
    constexpr bool kAlone = true;
    const auto& [path, options, oldestFormat] = opening;
    Database database(name, options.readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
    if (!options.readOnly && database.IsReadOnly()) {
        RefuseFile(path, Message("the file is read-only; open it for reading only, or make it writable"),
                   DatabaseErrorNumber::NotPermitted);
    }
    return OpenChecked(std::move(database), opening, !kAlone, code);
}

Database OpenSomehow(const Opening& opening) {
    const std::string name = AbsoluteName(opening.path);
    int code = SQLITE_OK;
    std::exception_ptr usual;
    try {
        return OpenWithFilesBeside(name, opening, code);
    } catch (const DatabaseError&) {
        if (!LacksFilesBeside(code)) throw;
        usual = std::current_exception();
    }
    try {
        return OpenAlone(name, opening);
    } catch (const DatabaseError&) {
        std::rethrow_exception(usual);
    }
}

/// Opens a file; errors name it.
Database OpenNamed(const Opening& opening) {
    CheckIsFile(opening.path);
    try {
        return OpenSomehow(opening);
    } catch (const DatabaseError& error) {
        if (error.Description().find(opening.path) != std::string::npos) throw;
        throw DatabaseError(error.Number(),
                            Message("The book '{1}' cannot be opened: {2}", opening.path, error.Description()));
    }
}

}  // namespace

Database OpenBookFile(const std::string& path, const BookOptions& options) {
    return OpenNamed({path, options, schema::kFormat});
}

Database OpenBookOfAnyFormat(const std::string& path, std::chrono::milliseconds busyTimeout) {
    constexpr std::int32_t kOldestFormat = 1;
    BookOptions options;
    options.busyTimeout = busyTimeout;
    return OpenNamed({path, options, kOldestFormat});
}

Database OpenDraft(const std::string& path, std::chrono::milliseconds busyTimeout) {
    Database database(AbsoluteName(path), SQLITE_OPEN_READWRITE);
    Configure(database, busyTimeout);
    database.Run("PRAGMA locking_mode = EXCLUSIVE");
    database.Run("PRAGMA journal_mode = MEMORY");
    database.Run("PRAGMA synchronous = OFF");
    return database;
}

Database OpenUnchanging(const std::string& path) {
    return Database(Uri(AbsoluteName(path), "?immutable=1"), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

Database OpenMemory() {
    Database database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY);
    Configure(database, BookOptions().busyTimeout);
    return database;
}

void MarkAsBook(const Database& database) {
    database.Run("PRAGMA application_id = " + std::to_string(kApplicationId));
    database.Run("PRAGMA user_version = " + std::to_string(schema::kFormat));
}

std::int32_t FormatOf(const Database& database) {
    return static_cast<std::int32_t>(database.IntegerOf("PRAGMA user_version"));
}

void MarkAsLogged(const std::string& path) {
    // The header's read and write versions: SQLite would make a log, under the draft's name, to set them itself.
    constexpr std::streamoff kVersions = 18;
    std::fstream file(text::PathOf(path), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(kVersions).write("\2\2", 2).flush();
    if (!file) {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::DiskFailure),
                            Message("The disk failed: the new book's file could not be written"));
    }
}

}  // namespace kpTables::engines::sqlite
