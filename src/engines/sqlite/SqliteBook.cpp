#include "engines/sqlite/SqliteBook.h"

#include <utility>

#include "engines/common/EngineBook.h"
#include "engines/sqlite/BookFile.h"
#include "engines/sqlite/BookTables.h"
#include "engines/sqlite/TextOrderVersion.h"
#include "kpTables/Error.h"

namespace kpTables::engines::sqlite {

namespace {

[[noreturn]] void Refuse(const std::string& url, const char* complaint) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        "The book '" + url + "' cannot be " + complaint);
}

BookPtr Prepared(BookPtr book, const NewBookOptions& options) {
    if (options.prepare) options.prepare(book);
    return book;
}

}  // namespace

BookPtr OpenFile(const std::string& path, const std::string& url, const BookOptions& options) {
    OpenedDatabase opened(OpenBookFile(path, options));
    BringIndexesUpToDate(*opened.database, path);
    return engines::MakeBook(url, std::move(opened.executor));
}

BookPtr CreateFile(const std::string& path, const std::string& url, const NewBookOptions& options) {
    NewBookFile file(path);
    OpenedDatabase made(OpenNewFile(path, options.busyTimeout));
    MakeTables(made, options.header);
    MakeDurable(*made.database);
    BookPtr book = Prepared(engines::MakeBook(url, std::move(made.executor)), options);
    file.Keep();
    return book;
}

BookPtr OpenInMemory(const std::string& /*name*/, const std::string& url, const BookOptions& /*options*/) {
    Refuse(url, "opened: a book in memory ends with its connection; it can only be made");
}

BookPtr CreateInMemory(const std::string& name, const std::string& url, const NewBookOptions& options) {
    if (!name.empty()) Refuse(url, "made: a book in memory has no name");
    OpenedDatabase made(OpenMemory());
    MakeTables(made, options.header);
    return Prepared(engines::MakeBook(url, std::move(made.executor)), options);
}

}  // namespace kpTables::engines::sqlite
