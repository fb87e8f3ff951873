// The built-in engines, by the schemes of their books' URLs.
#include <algorithm>
#include <string_view>

#include "engines/BookUrl.h"
#include "engines/odbc/OdbcBook.h"
#include "engines/postgres/PostgresBook.h"
#include "engines/sqlite/BookParts.h"
#include "engines/sqlite/BookUpgrade.h"
#include "engines/sqlite/SqliteBook.h"
#include "kpTables/Book.h"
#include "kpTables/BookFiles.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables {

namespace {

struct Engine {
    std::string_view scheme;
    const char* books;  ///< what its books are, for messages
    BookPtr (*open)(const std::string& address, const std::string& url, const BookOptions& options);
    BookPtr (*create)(const std::string& address, const std::string& url, const NewBookOptions& options);
    BookUpgrade (*upgrade)(const std::string& address, const std::string& url, const UpgradeOptions& options);
    /// Null where a URL names one book.
    std::vector<ListedBook> (*list)(const std::string& address, const std::string& url, const BookOptions& options);
};

constexpr Engine kEngines[] = {
    {"file", Translatable("a book is a file (its path, or file: and its path)"), engines::sqlite::OpenFile,
     engines::sqlite::CreateFile, engines::sqlite::UpgradeFile, nullptr},
    {"memory", Translatable("a book in memory is made anew each time (memory:)"), engines::sqlite::OpenInMemory,
     engines::sqlite::CreateInMemory, engines::sqlite::UpgradeInMemory, nullptr},
    {"postgresql", Translatable("a book on a server is postgresql://user@host/database?book=NAME"),
     engines::postgres::OpenOnServer, engines::postgres::CreateOnServer, engines::postgres::UpgradeOnServer,
     engines::postgres::ListOnServer},
    {"odbc", Translatable("tables behind an ODBC driver are odbc:DSN=NAME, or odbc: and another connection string"),
     engines::odbc::OpenBehindDriver, engines::odbc::CreateBehindDriver, engines::odbc::UpgradeBehindDriver, nullptr},
};

const Engine& EngineFor(const std::string& scheme, const std::string& url) {
    const auto found = std::find_if(std::begin(kEngines), std::end(kEngines),
                                    [&](const Engine& engine) { return engine.scheme == scheme; });
    if (found != std::end(kEngines)) return *found;
    std::string message = Message("The book '{1}' cannot be opened: there is no engine for '{2}:'", url, scheme);
    for (const Engine& engine : kEngines) message.append("; ").append(Translated(engine.books));
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), message);
}

}  // namespace

bool IsPartOfBook(const std::string& path, const std::string& url) {
    const engines::BookUrl parts = engines::ParseBookUrl(url);
    return engines::sqlite::IsPartOfBook(path, parts.scheme == "file" ? parts.address : "");
}

BookPtr OpenBook(const std::string& url, const BookOptions& options) {
    const engines::BookUrl parts = engines::ParseBookUrl(url);
    return EngineFor(parts.scheme, url).open(parts.address, url, options);
}

BookPtr CreateBook(const std::string& url, const NewBookOptions& options) {
    const engines::BookUrl parts = engines::ParseBookUrl(url);
    return EngineFor(parts.scheme, url).create(parts.address, url, options);
}

std::vector<ListedBook> ListBooks(const std::string& url, const BookOptions& options) {
    const engines::BookUrl parts = engines::ParseBookUrl(url);
    const Engine& engine = EngineFor(parts.scheme, url);
    if (engine.list) return engine.list(parts.address, url, options);
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("'{1}' has no books to list: name a server's database, as in {2}", url,
                                "postgresql://user@host/database"));
}

BookUpgrade UpgradeBook(const std::string& url, const UpgradeOptions& options) {
    const engines::BookUrl parts = engines::ParseBookUrl(url);
    return EngineFor(parts.scheme, url).upgrade(parts.address, url, options);
}

}  // namespace kpTables
