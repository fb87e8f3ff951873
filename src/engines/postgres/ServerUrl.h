// The URL of a book on a server: postgresql://user@host:port/database?book=2026.
#pragma once

#include <string>

namespace kpTables::engines::postgres {

struct ServerUrl {
    std::string connection;  ///< for libpq: the URL without the book
    std::string book;        ///< the name of its schema
};

/// address: the URL behind "postgresql:". Raises a DatabaseError when it names no book, or has a password in it, which
/// other users of the machine could read.
ServerUrl ParseServerUrl(const std::string& address, const std::string& url);

}  // namespace kpTables::engines::postgres
