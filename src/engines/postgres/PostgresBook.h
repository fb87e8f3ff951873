// Books that a PostgreSQL server keeps: a schema each.
#pragma once

#include <string>
#include <vector>

#include "kpTables/Book.h"

namespace kpTables::engines::postgres {

// See OpenBook, CreateBook, UpgradeBook and ListBooks. address is the URL behind its scheme.
BookPtr OpenOnServer(const std::string& address, const std::string& url, const BookOptions& options);
BookPtr CreateOnServer(const std::string& address, const std::string& url, const NewBookOptions& options);
BookUpgrade UpgradeOnServer(const std::string& address, const std::string& url, const UpgradeOptions& options);
std::vector<ListedBook> ListOnServer(const std::string& address, const std::string& url, const BookOptions& options);

}  // namespace kpTables::engines::postgres
