#include "engines/odbc/OdbcBook.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::odbc {

namespace {

[[noreturn]] void RefuseDriver(const std::string& url) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("The book '{1}' cannot be opened: this program was built without ODBC", url));
}

}  // namespace

BookPtr OpenBehindDriver(const std::string& /*address*/, const std::string& url, const BookOptions& /*options*/) {
    RefuseDriver(url);
}

BookPtr CreateBehindDriver(const std::string& /*address*/, const std::string& url, const NewBookOptions& /*options*/) {
    RefuseDriver(url);
}

BookUpgrade UpgradeBehindDriver(const std::string& /*address*/, const std::string& url,
                                const UpgradeOptions& /*options*/) {
    RefuseDriver(url);
}

}  // namespace kpTables::engines::odbc
