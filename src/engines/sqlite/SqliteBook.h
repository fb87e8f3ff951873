// Books that SQLite keeps: one file each, or in memory.
#pragma once

#include <string>

#include "kpTables/Book.h"

namespace kpTables::engines::sqlite {

// See OpenBook and CreateBook. url is the one that the book reports.
BookPtr OpenFile(const std::string& path, const std::string& url, const BookOptions& options);
BookPtr CreateFile(const std::string& path, const std::string& url, const NewBookOptions& options);
/// Always raises: a book in memory ends with its connection.
BookPtr OpenInMemory(const std::string& name, const std::string& url, const BookOptions& options);
/// The name must be empty.
BookPtr CreateInMemory(const std::string& name, const std::string& url, const NewBookOptions& options);

}  // namespace kpTables::engines::sqlite
