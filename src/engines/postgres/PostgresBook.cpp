#include "engines/postgres/PostgresBook.h"

#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include "BookSchema.h"
#include "engines/common/EngineBook.h"
#include "engines/postgres/BookLock.h"
#include "engines/postgres/PostgresDriver.h"
#include "engines/postgres/ServerUrl.h"
#include "engines/postgres/SharedSchema.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

namespace {

using sql::print::postgres::QuotedName;
using sql::print::postgres::QuotedText;

[[noreturn]] void RaiseOfBook(const std::string& message) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), message);
}

[[noreturn]] void RefuseOpening(const std::string& url, const std::string& complaint) {
    RaiseOfBook(Message("The book '{1}' cannot be opened: {2}", url, complaint));
}

[[noreturn]] void RefuseMaking(const std::string& url, const std::string& complaint) {
    RaiseOfBook(Message("The book '{1}' cannot be made: {2}", url, complaint));
}

/// What a statement relies on, whatever the server's own settings are.
std::string Settings(const std::string& book, std::chrono::milliseconds busyTimeout) {
    return "SET search_path = " + QuotedName(book) +
           "; SET client_min_messages = error; SET lock_timeout = " + std::to_string(busyTimeout.count()) +
           "; SET client_encoding = 'UTF8'; SET datestyle = 'ISO'; SET standard_conforming_strings = on; "
           "SET jit = off";
}

std::unique_ptr<Database> Connected(const ServerUrl& parts, const std::string& url,
                                    std::chrono::milliseconds busyTimeout, std::function<bool()> interrupted) {
    try {
        auto database = std::make_unique<Database>(parts.connection, std::move(interrupted));
        database->SetUp(Settings(parts.book, busyTimeout) + "; LISTEN " + QuotedName(parts.book));
        return database;
    } catch (const DatabaseError& error) {
        RefuseOpening(url, error.Description());
    }
}

/// The standby that the URL names for reports, once it has what the server has now; null when it is not reached or does
/// not come so far in time, or would order texts in another way.
std::unique_ptr<Database> StandbyFor(Database& server, const ServerUrl& parts, const BookOptions& options) {
    if (parts.reports.empty()) return nullptr;
    constexpr auto kBetweenQuestions = std::chrono::milliseconds(10);
    const auto end = std::chrono::steady_clock::now() + options.busyTimeout;
    try {
        const Result saved = server.Run("SELECT pg_current_wal_flush_lsn()");
        auto standby = std::make_unique<Database>(parts.reports, options.interrupted);
        standby->SetUp(Settings(parts.book, options.busyTimeout));
        const std::string hasAll =
            "SELECT pg_is_in_recovery() AND pg_last_wal_replay_lsn() >= " + QuotedText(std::string(saved.Value(0, 0)));
        while (standby->Run(hasAll).Value(0, 0) != "t") {
            if (std::chrono::steady_clock::now() >= end || (options.interrupted && options.interrupted()))
                return nullptr;
            std::this_thread::sleep_for(kBetweenQuestions);
        }
        return HasIndexesUpToDate(*standby) ? std::move(standby) : nullptr;
    } catch (const DatabaseError&) {
        return nullptr;
    }
}

constexpr std::int64_t kUnfinished = 0;
constexpr std::int64_t kNone = -1;

/// The format that a book notes; kNone when the schema is no book's, kUnfinished while the book is made.
std::int64_t FormatOf(Database& database, const std::string& book) {
    const std::string table = QuotedName(book) + ".kp_book";
    const Result found = database.Run("SELECT to_regclass(" + QuotedText(table) + ") IS NOT NULL");
    if (found.Value(0, 0) != "t") return kNone;
    return database.Run("SELECT format FROM " + table).Integer(0, 0);
}

bool HasSchema(Database& database, const std::string& book) {
    return database.Run("SELECT count(*) FROM pg_namespace WHERE nspname = " + QuotedText(book)).Integer(0, 0) > 0;
}

void RemoveSchema(Database& database, const std::string& book) {
    database.Run("DROP SCHEMA " + QuotedName(book) + " CASCADE");
}

void MakeSchema(Database& database, const std::string& book, const std::string& url) {
    if (HasSchema(database, book)) {
        if (FormatOf(database, book) != kUnfinished) RefuseMaking(url, Message("there is one already"));
        RemoveSchema(database, book);
    }
    const std::string table = QuotedName(book) + ".kp_book";
    database.Run("CREATE SCHEMA " + QuotedName(book) + "; CREATE TABLE " + table +
                 " (format integer NOT NULL, version bigint NOT NULL, whole bigint, icu text); INSERT INTO " + table +
                 " VALUES (" + std::to_string(kUnfinished) + ", 1, NULL, " + std::string(kActualIcuVersion) + ")");
}

void TakeSqlServerNames(Database& database) {
    for (const auto& column : schema::kSqlServerNames) {
        database.Run("ALTER TABLE " + QuotedName(column.table) + " RENAME COLUMN " + QuotedName(column.name) + " TO " +
                     QuotedName(column.sqlServerName));
    }
}

/// Makes the tables, and lets the host prepare the book that they are, in one transaction.
void MakeBookTables(const engines::ExecutorPtr& executor, Database& database, const std::string& url,
                    const NewBookOptions& options) {
    executor->GetTransaction().Begin();
    engines::CreateBookTables(*executor);
    if (options.header == HeaderDialect::SqlServer) TakeSqlServerNames(database);
    database.Run("UPDATE kp_book SET version = version + 1");
    BookPtr book = engines::MakeBook(url, executor);
    if (options.prepare) options.prepare(book);
    book->FlushRows();
    const std::weak_ptr<Book> kept = std::exchange(book, nullptr);
    if (!kept.expired()) RefuseMaking(url, Message("its preparation has kept it open"));
    database.Run("UPDATE kp_book SET format = " + std::to_string(schema::kFormat) + ", whole = version");
    executor->GetTransaction().Commit();
}

}  // namespace

BookPtr OpenOnServer(const std::string& address, const std::string& url, const BookOptions& options) {
    const ServerUrl parts = ParseServerUrl(address, url);
    auto database = Connected(parts, url, options.busyTimeout, options.interrupted);
    const std::int64_t format = FormatOf(*database, parts.book);
    if (format == kNone || format == kUnfinished) RefuseOpening(url, Message("the database has no book of that name"));
    if (format != schema::kFormat) {
        RefuseOpening(url, Message("its format is {1}, and this program's {2}", format, schema::kFormat));
    }
    if (!options.readOnly) MakeSharedSchema(*database);
    if (!options.readOnly) BringIndexesUpToDate(*database, parts.book);
    auto standby = options.forReports ? StandbyFor(*database, parts, options) : nullptr;
    const bool readOnly = options.readOnly || standby;
    if (standby) database = std::move(standby);
    if (readOnly) database->SetUp("SET default_transaction_read_only = on");
    auto driver = std::make_unique<PostgresDriver>(std::move(database), engines::LimitsOf(options), readOnly);
    return engines::MakeBook(url, std::make_shared<engines::Executor>(std::move(driver)));
}

BookPtr CreateOnServer(const std::string& address, const std::string& url, const NewBookOptions& options) {
    const ServerUrl parts = ParseServerUrl(address, url);
    auto connected = Connected(parts, url, options.busyTimeout, options.interrupted);
    Database& database = *connected;
    MakeSharedSchema(database);
    MakeSchema(database, parts.book, url);
    auto driver = std::make_unique<PostgresDriver>(std::move(connected), engines::LimitsOf(options), false);
    const auto executor = std::make_shared<engines::Executor>(std::move(driver));
    try {
        MakeBookTables(executor, database, url, options);
    } catch (...) {
        try {
            RollBackQuietly(database);
            RemoveSchema(database, parts.book);
        } catch (const DatabaseError&) {
            // The next attempt removes it.
        }
        throw;
    }
    return engines::MakeBook(url, executor);
}

BookUpgrade UpgradeOnServer(const std::string& address, const std::string& url, const UpgradeOptions& options) {
    BookOptions open;
    open.busyTimeout = options.busyTimeout;
    const BookPtr book = OpenOnServer(address, url, open);
    const auto missing = book->MissingParts();
    if (!missing.empty())
        RaiseOfBook(Message("The book '{1}' cannot be upgraded: it lacks {2}; make a new one and copy it", url,
                            missing.front()));
    return {schema::kFormat, schema::kFormat, "", {}};
}

}  // namespace kpTables::engines::postgres
