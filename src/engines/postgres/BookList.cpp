// The books that a database of a server keeps.
#include "BookSchema.h"
#include "engines/postgres/PostgresBook.h"
#include "engines/postgres/ServerBook.h"
#include "engines/postgres/ServerUrl.h"

namespace kpTables::engines::postgres {

std::vector<ListedBook> ListOnServer(const std::string& address, const std::string& url, const BookOptions& options) {
    ServerUrl parts = ParseDatabaseUrl(address);
    parts.book = "public";  // no book's
    const auto database = Connected(parts, url, ConnectionOptionsOf(options));
    const Result found = database->Run(
        "SELECT nspname, (SELECT sum(pg_total_relation_size(part.oid)) FROM pg_class AS part WHERE part.relnamespace = "
        "book.relnamespace AND part.relkind = 'r') FROM pg_class AS book JOIN pg_namespace ON pg_namespace.oid = "
        "book.relnamespace WHERE book.relname = 'kp_book' AND book.relkind = 'r' AND "
        "has_schema_privilege(pg_namespace.oid, 'USAGE') AND has_table_privilege(book.oid, 'SELECT') ORDER BY nspname "
        "COLLATE \"C\"");
    std::vector<ListedBook> books;
    for (int row = 0; row < found.Rows(); ++row) {
        const std::string name(found.Value(row, 0));
        const std::int64_t format = FormatOf(*database, name);
        if (format <= kUnfinished) continue;
        books.push_back({name, UrlOfBook(ParseDatabaseUrl(address), name), static_cast<std::int32_t>(format),
                         format == schema::kFormat, found.Integer(row, 1)});
    }
    return books;
}

}  // namespace kpTables::engines::postgres
