#include "engines/sqlite/SqliteBook.h"

#include <memory>
#include <utility>

#include "engines/common/EngineBook.h"
#include "engines/sqlite/BookFile.h"
#include "engines/sqlite/BookTables.h"
#include "engines/sqlite/NewBookFile.h"
#include "engines/sqlite/SqliteDriver.h"
#include "engines/sqlite/TextOrderVersion.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::sqlite {

namespace {

[[noreturn]] void RefuseInMemory(const std::string& complaint) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), complaint);
}

/// Makes the tables, and lets the host prepare the book that they are.
BookPtr MakeNewBook(const std::string& url, OpenedDatabase empty, const NewBookOptions& options) {
    MakeTables(empty, options.header);
    BookPtr book = engines::MakeBook(url, std::move(empty.executor));
    if (options.prepare) options.prepare(book);
    book->FlushRows();
    return book;
}

/// Makes the book and closes it.
void MakeDraft(const std::string& draft, const std::string& url, const NewBookOptions& options) {
    OpenedDatabase empty(OpenDraft(draft, options.busyTimeout), engines::LimitsOf(options));
    const std::weak_ptr<engines::Executor> connection = empty.executor;
    MakeNewBook(url, std::move(empty), options);
    if (!connection.expired())
        RefuseInMemory(
            Message("The book '{1}' cannot be made: its preparation has kept it, or a recordset of it, open", url));
}

}  // namespace

BookPtr OpenFile(const std::string& path, const std::string& url, const BookOptions& options) {
    OpenedDatabase opened(OpenBookFile(path, options), engines::LimitsOf(options));
    BringIndexesUpToDate(*opened.database, path);
    return engines::MakeBook(url, std::move(opened.executor));
}

BookPtr CreateFile(const std::string& path, const std::string& url, const NewBookOptions& options) {
    NewBookFile draft(path);
    MakeDraft(draft.Path(), url, options);
    MarkAsLogged(draft.Path());
    draft.Publish();
    BookOptions open;
    open.busyTimeout = options.busyTimeout;
    open.maxRows = options.maxRows;
    open.maxBytes = options.maxBytes;
    open.interrupted = options.interrupted;
    return OpenFile(path, url, open);
}

BookPtr OpenInMemory(const std::string& /*name*/, const std::string& url, const BookOptions& /*options*/) {
    RefuseInMemory(Message(
        "The book '{1}' cannot be opened: a book in memory ends with its connection; it can only be made", url));
}

BookPtr CreateInMemory(const std::string& name, const std::string& url, const NewBookOptions& options) {
    if (!name.empty()) RefuseInMemory(Message("The book '{1}' cannot be made: a book in memory has no name", url));
    OpenedDatabase made(OpenMemory(), engines::LimitsOf(options));
    return MakeNewBook(url, std::move(made), options);
}

}  // namespace kpTables::engines::sqlite
