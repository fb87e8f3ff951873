#include "engines/postgres/PostgresBook.h"

#include <memory>
#include <utility>

#include "BookSchema.h"
#include "engines/common/EngineBook.h"
#include "engines/postgres/BookLock.h"
#include "engines/postgres/BookTables.h"
#include "engines/postgres/PostgresDriver.h"
#include "engines/postgres/ServerBook.h"
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

[[noreturn]] void RefuseMaking(const std::string& url, const std::string& complaint) {
    RaiseOfBook(Message("The book '{1}' cannot be made: {2}", url, complaint));
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
    const std::string schema = QuotedName(book);
    try {
        database.Run("CREATE SCHEMA " + schema + "; " + BookNoteText(kUnfinished, schema + "."));
    } catch (const DatabaseError& error) {
        if (error.Number() != static_cast<std::int32_t>(DatabaseErrorNumber::NotPermitted)) throw;
        RefuseMaking(url, Message("{1}; the user needs the right to create schemas there", error.Description()));
    }
}

/// What a newer program, or a newer server, asks for; both are the owner's to do.
void BringUpToDate(Database& database, const std::string& book, const std::string& url) {
    try {
        MakeSharedSchema(database);
        BringIndexesUpToDate(database, book);
    } catch (const DatabaseError& error) {
        if (error.Number() != static_cast<std::int32_t>(DatabaseErrorNumber::NotPermitted)) throw;
        RefuseOpening(url,
                      Message("the book's owner has to open it once with this program ({1})", error.Description()));
    }
}

/// Who may see a part of the rows only is told so, rather than to get a copy without the others.
void RequireAllRows(Database& database, const std::string& url) {
    const Result hidden = database.Run(
        "SELECT count(*) FROM pg_class JOIN pg_namespace ON pg_namespace.oid = relnamespace WHERE nspname = "
        "current_schema() AND row_security_active(pg_class.oid)");
    if (hidden.Integer(0, 0) > 0)
        RefuseOpening(url, Message("only the book's owner sees all of its rows and can copy it"));
    database.SetUp("SET row_security = off");
}

/// Makes the tables, and lets the host prepare the book that they are, in one transaction.
void MakeBookTables(const engines::ExecutorPtr& executor, Database& database, const std::string& url,
                    const NewBookOptions& options) {
    executor->GetTransaction().Begin();
    MakeTables(database, options.header);
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
    auto database = Connected(parts, url, ConnectionOptionsOf(options));
    CheckedFormat(*database, parts.book, url, schema::kFormat);
    BringUpToDate(*database, parts.book, url);
    auto standby = options.forReports ? StandbyFor(*database, parts, ConnectionOptionsOf(options)) : nullptr;
    const bool readOnly = options.readOnly || standby;
    if (standby) database = std::move(standby);
    if (readOnly) database->SetUp("SET default_transaction_read_only = on");
    if (options.readOnly) RequireAllRows(*database, url);
    auto driver = std::make_unique<PostgresDriver>(std::move(database), engines::LimitsOf(options), readOnly);
    return engines::MakeBook(url, std::make_shared<engines::Executor>(std::move(driver)));
}

BookPtr CreateOnServer(const std::string& address, const std::string& url, const NewBookOptions& options) {
    const ServerUrl parts = ParseServerUrl(address, url);
    auto connected = Connected(parts, url, ConnectionOptionsOf(options));
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

}  // namespace kpTables::engines::postgres
