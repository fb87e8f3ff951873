#include "engines/postgres/ServerBook.h"

#include <chrono>
#include <thread>
#include <utility>

#include "engines/common/SchemaParts.h"
#include "engines/postgres/Pooler.h"
#include "engines/postgres/SharedSchema.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

namespace {

using sql::print::postgres::QuotedName;
using sql::print::postgres::QuotedText;

/// What a statement relies on, whatever the server's own settings are.
std::string Settings(const std::string& book, std::chrono::milliseconds busyTimeout) {
    return "SET search_path = " + QuotedName(book) +
           "; SET client_min_messages = error; SET lock_timeout = " + std::to_string(busyTimeout.count()) +
           "; SET client_encoding = 'UTF8'; SET datestyle = 'ISO'; SET standard_conforming_strings = on; "
           "SET jit = off";
}

std::unique_ptr<Database> LoggedIn(const std::string& connection, const ConnectionOptions& options) {
    try {
        return std::make_unique<Database>(connection, options.interrupted);
    } catch (const PasswordNeeded&) {
        if (!options.password) throw;
    }
    return std::make_unique<Database>(WithOption(connection, "password", options.password()), options.interrupted);
}

}  // namespace

void RefuseOpening(const std::string& url, const std::string& complaint) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("The book '{1}' cannot be opened: {2}", url, complaint));
}

std::unique_ptr<Database> Connected(const ServerUrl& parts, const std::string& url, const ConnectionOptions& options) {
    try {
        auto database = LoggedIn(parts.connection, options);
        database->SetUp(Settings(parts.book, options.busyTimeout) + "; LISTEN " + QuotedName(parts.book));
        RefuseSharedConnections(*database);
        return database;
    } catch (const DatabaseError& error) {
        RefuseOpening(url, error.Description());
    }
}

std::unique_ptr<Database> StandbyFor(Database& server, const ServerUrl& parts, const ConnectionOptions& options) {
    if (parts.reports.empty()) return nullptr;
    constexpr auto kBetweenQuestions = std::chrono::milliseconds(10);
    const auto end = std::chrono::steady_clock::now() + options.busyTimeout;
    try {
        const Result saved = server.Run("SELECT pg_current_wal_flush_lsn()");
        auto standby = LoggedIn(parts.reports, options);
        standby->SetUp(Settings(parts.book, options.busyTimeout));
        RefuseSharedConnections(*standby);
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

std::int64_t FormatOf(Database& database, const std::string& book) {
    const std::string table = QuotedName(book) + ".kp_book";
    const Result found = database.Run(
        "SELECT count(*) FROM pg_class JOIN pg_namespace ON pg_namespace.oid = relnamespace WHERE relname = 'kp_book' AND "
        "nspname = " +
        QuotedText(book));
    if (found.Integer(0, 0) == 0) return kNoBook;
    return database.Run("SELECT format FROM " + table).Integer(0, 0);
}

std::int64_t CheckedFormat(Database& database, const std::string& book, const std::string& url, std::int64_t oldest) {
    std::int64_t format = kNoBook;
    try {
        format = FormatOf(database, book);
    } catch (const DatabaseError& error) {
        RefuseOpening(url, error.Description());
    }
    if (format == kNoBook || format == kUnfinished)
        RefuseOpening(url, Message("the database has no book of that name"));
    const std::string complaint = engines::FormatComplaint(format, oldest);
    if (!complaint.empty()) RefuseOpening(url, complaint);
    return format;
}

}  // namespace kpTables::engines::postgres
