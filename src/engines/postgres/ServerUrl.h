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
/// The same, where the URL need not name a book.
ServerUrl ParseDatabaseUrl(const std::string& address);
/// For libpq: a connection with one more option.
std::string WithOption(const std::string& connection, const std::string& name, const std::string& value);
/// The URL of a book beside another.
std::string UrlOfBook(const ServerUrl& parts, const std::string& book);

}  // namespace kpTables::engines::postgres
