#include "engines/sqlite/BookFile.h"

#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <system_error>

#include "BookSchema.h"
#include "engines/sqlite/Failure.h"
#include "kpTables/Error.h"

namespace kpTables::engines::sqlite {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kApplicationId = 0x6B705462;  // "kpTb"
/// In KiB. A month-end closing reads each page once: a larger cache would only cost memory.
constexpr int kCacheKibibytes = 16384;

fs::path ToPath(const std::string& path) { return fs::path(std::u8string(path.begin(), path.end())); }

/// The name for SQLite: absolute, so that it is never taken for a URI or an in-memory database.
std::string AbsoluteName(const std::string& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(ToPath(path), error);
    const std::u8string name = absolute.u8string();
    return error ? path : std::string(name.begin(), name.end());
}

[[noreturn]] void Refuse(const std::string& path, const std::string& complaint,
                         DatabaseErrorNumber number = DatabaseErrorNumber::Failure) {
    throw DatabaseError(static_cast<std::int32_t>(number), "The book '" + path + "' cannot be opened: " + complaint);
}

void CheckName(const std::string& path) {
    if (path.empty() || path.find('\0') != path.npos) Refuse(path, "the path is empty or holds a NUL character");
}

void CheckIsFile(const std::string& path) {
    CheckName(path);
    std::error_code error;
    const fs::file_status status = fs::status(ToPath(path), error);
    if (status.type() == fs::file_type::not_found) Refuse(path, "there is no such file");
    if (status.type() == fs::file_type::directory) Refuse(path, "it is a directory");
    if (status.type() == fs::file_type::none) Refuse(path, error.message());
    if (status.type() != fs::file_type::regular) Refuse(path, "it is not a regular file");
    if (fs::file_size(ToPath(path), error) == 0) Refuse(path, "the file is empty and so is not a book");
}

void Configure(const Database& database, std::chrono::milliseconds busyTimeout) {
    sqlite3* const handle = database.Get();
    Check(handle, sqlite3_busy_timeout(handle, static_cast<int>(busyTimeout.count())));
    // A damaged or malicious file must do no more than give wrong values.
    Check(handle, sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr));
    Check(handle, sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr));
    database.Run("PRAGMA cache_size = -" + std::to_string(kCacheKibibytes));
    database.Run("PRAGMA foreign_keys = OFF");
}

/// SQLite accepts a truncated last page.
void CheckIsComplete(const Database& database, const std::string& path) {
    const auto expected = database.IntegerOf("PRAGMA page_count") * database.IntegerOf("PRAGMA page_size");
    std::error_code error;
    // With a write-ahead log, a file may be shorter than its book.
    const auto logged = fs::file_size(ToPath(path + "-wal"), error);
    if (!error && logged > 0) return;
    const auto size = fs::file_size(ToPath(path), error);
    if (!error && static_cast<std::int64_t>(size) < expected) Refuse(path, "it is damaged: the file's end is missing");
}

void CheckFormat(std::int32_t format, std::int32_t oldest, const std::string& path) {
    const std::string its = "its format is " + std::to_string(format);
    const std::string own = std::to_string(schema::kFormat);
    if (format > schema::kFormat) {
        Refuse(path,
               its + ", and this version of the program knows formats up to " + own + "; open it with a newer version");
    }
    if (format < oldest) Refuse(path, its + ", an earlier one than " + own + "; kpbook upgrade brings it up to date");
}

/// Reads the header and the schema, so that a file that is no book, or damaged, is refused at once.
void CheckIsBook(const Database& database, const std::string& path, std::int32_t oldestFormat = schema::kFormat) {
    const std::int64_t application = database.IntegerOf("PRAGMA application_id");
    if (application != kApplicationId) Refuse(path, "the file is a SQLite database, but not a book");
    CheckFormat(FormatOf(database), oldestFormat, path);
    database.IntegerOf("SELECT COUNT(*) FROM sqlite_schema");
    CheckIsComplete(database, path);
}

/// In a read-only directory, a book in WAL mode opens only as an immutable one, which is safe as long as no other
/// program has left a log beside it.
std::optional<Database> OpenUnchanging(const std::string& name) {
    std::error_code error;
    if (fs::exists(ToPath(name + "-wal"), error)) return std::nullopt;
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
    return Database(uri + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

Database OpenForReading(const std::string& path, const BookOptions& options) {
    const std::string name = AbsoluteName(path);
    Database database(name, SQLITE_OPEN_READONLY);
    try {
        Configure(database, options.busyTimeout);
        CheckIsBook(database, path);
        return database;
    } catch (const DatabaseError&) {
        // The log's index can be neither opened nor created.
        const int code = sqlite3_errcode(database.Get()) & 0xFF;
        auto unchanging =
            code == SQLITE_CANTOPEN || code == SQLITE_READONLY ? OpenUnchanging(name) : std::optional<Database>();
        if (!unchanging) throw;
        Configure(*unchanging, options.busyTimeout);
        CheckIsBook(*unchanging, path);
        return std::move(*unchanging);
    }
}

Database OpenForWriting(const std::string& path, const BookOptions& options,
                        std::int32_t oldestFormat = schema::kFormat) {
    Database database(AbsoluteName(path), SQLITE_OPEN_READWRITE);
    if (database.IsReadOnly()) {
        Refuse(path, "the file is read-only; open it for reading only, or make it writable",
               DatabaseErrorNumber::NotPermitted);
    }
    Configure(database, options.busyTimeout);
    CheckIsBook(database, path, oldestFormat);
    MakeDurable(database);
    return database;
}

/// Opens a file; errors name it.
Database Named(const std::string& path, const std::function<Database()>& open) {
    CheckIsFile(path);
    try {
        return open();
    } catch (const DatabaseError& error) {
        if (error.Description().find(path) != std::string::npos) throw;
        throw DatabaseError(error.Number(), "The book '" + path + "' cannot be opened: " + error.Description());
    }
}

}  // namespace

Database OpenBookFile(const std::string& path, const BookOptions& options) {
    return Named(path,
                 [&] { return options.readOnly ? OpenForReading(path, options) : OpenForWriting(path, options); });
}

Database OpenBookOfAnyFormat(const std::string& path, std::chrono::milliseconds busyTimeout) {
    constexpr std::int32_t kOldestFormat = 1;
    return Named(path, [&] { return OpenForWriting(path, {.busyTimeout = busyTimeout}, kOldestFormat); });
}

NewBookFile::NewBookFile(const std::string& path) : path_(path) {
    CheckName(path);
    std::error_code error;
    if (fs::exists(fs::symlink_status(ToPath(path), error))) {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                            "The book '" + path + "' cannot be made: there is a file of that name already");
    }
    // "x" fails on a file that another program has created meanwhile.
    std::FILE* const file = std::fopen(path.c_str(), "wbx");
    if (!file) {
        throw DatabaseError(
            static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
            "The book '" + path + "' cannot be made: " + std::error_code(errno, std::generic_category()).message());
    }
    std::fclose(file);
}

NewBookFile::~NewBookFile() {
    if (kept_) return;
    std::error_code ignored;
    for (const char* suffix : {"", "-journal", "-wal", "-shm"}) fs::remove(ToPath(path_ + suffix), ignored);
}

Database OpenNewFile(const std::string& path, std::chrono::milliseconds busyTimeout) {
    Database database(AbsoluteName(path), SQLITE_OPEN_READWRITE);
    Configure(database, busyTimeout);
    return database;
}

Database OpenMemory() {
    Database database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY);
    Configure(database, BookOptions().busyTimeout);
    return database;
}

void CopyToNewFile(const Database& database, const std::string& path) {
    NewBookFile file(path);
    {
        const Database copy(AbsoluteName(path), SQLITE_OPEN_READWRITE);
        sqlite3_backup* const backup = sqlite3_backup_init(copy.Get(), "main", database.Get(), "main");
        if (!backup) RaiseFailure(copy.Get(), sqlite3_errcode(copy.Get()), {});
        constexpr int kAllPages = -1;
        const int code = sqlite3_backup_step(backup, kAllPages);
        // Finishing reports a failed step, but not that the source was in use.
        Check(copy.Get(), sqlite3_backup_finish(backup));
        if (code != SQLITE_DONE) RaiseFailure(copy.Get(), code, {});
    }
    file.Keep();
}

void MarkAsBook(const Database& database) {
    database.Run("PRAGMA application_id = " + std::to_string(kApplicationId));
    database.Run("PRAGMA user_version = " + std::to_string(schema::kFormat));
}

std::int32_t FormatOf(const Database& database) {
    return static_cast<std::int32_t>(database.IntegerOf("PRAGMA user_version"));
}

void MakeDurable(const Database& database) {
    database.Run("PRAGMA journal_mode = WAL");
    // A bill that was entered is on the disk when the call returns.
    database.Run("PRAGMA synchronous = FULL");
}

}  // namespace kpTables::engines::sqlite
