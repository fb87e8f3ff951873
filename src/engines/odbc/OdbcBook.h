// Books whose tables a server keeps, behind its ODBC driver: odbc:DSN=shop.
#pragma once

#include <string>

#include "kpTables/Book.h"

namespace kpTables::engines::odbc {

/// Opens the tables at the connection string behind "odbc:". Texts go to the driver as they are: a server's own dialect
/// is what counts.
BookPtr OpenBehindDriver(const std::string& address, const std::string& url, const BookOptions& options);
/// Always raise: such tables are made, and changed, by the server's own means.
BookPtr CreateBehindDriver(const std::string& address, const std::string& url, const NewBookOptions& options);
BookUpgrade UpgradeBehindDriver(const std::string& address, const std::string& url, const UpgradeOptions& options);

}  // namespace kpTables::engines::odbc
