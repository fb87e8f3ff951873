#include "engines/postgres/PostgresBook.h"
#include "engines/postgres/SchemaScript.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::postgres {

namespace {

[[noreturn]] void RefuseServer(const std::string& url) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("The book '{1}' cannot be opened: this program was built without PostgreSQL", url));
}

}  // namespace

BookPtr OpenOnServer(const std::string& /*address*/, const std::string& url, const BookOptions& /*options*/) {
    RefuseServer(url);
}

BookPtr CreateOnServer(const std::string& /*address*/, const std::string& url, const NewBookOptions& /*options*/) {
    RefuseServer(url);
}

BookUpgrade UpgradeOnServer(const std::string& /*address*/, const std::string& url, const UpgradeOptions& /*options*/) {
    RefuseServer(url);
}

std::vector<ListedBook> ListOnServer(const std::string& /*address*/, const std::string& url,
                                     const BookOptions& /*options*/) {
    RefuseServer(url);
}

std::string SchemaScript() {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("This program was built without PostgreSQL"));
}

}  // namespace kpTables::engines::postgres
