// The files of books, for hosts that write other files.
#pragma once

#include <string>

namespace kpTables {

/// Whether a path names, under any of its names, a file of the book at url, a file of another book, or one that an
/// engine keeps beside a book (its log): nothing else may be written there.
bool IsPartOfBook(const std::string& path, const std::string& url);

}  // namespace kpTables
