// The URL of a book on a server: postgresql://user@host:port/database?book=2026&reports=standby:port.
#pragma once

#include <string>

namespace kpTables::engines::postgres {

struct ServerUrl {
    std::string connection;  ///< for libpq: the URL without the book
    std::string book;        ///< the name of its schema
    std::string reports;     ///< for libpq: the same database on the standby that reports=host:port names; "" for none
};

/// address: the URL behind "postgresql:". Raises a DatabaseError when it names no book, or has a password in it, which
/// other users of the machine could read.
ServerUrl ParseServerUrl(const std::string& address, const std::string& url);

}  // namespace kpTables::engines::postgres
