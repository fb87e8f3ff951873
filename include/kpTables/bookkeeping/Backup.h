// Copies of a book that are known to be whole.
#pragma once

#include <functional>
#include <string>

#include "kpTables/Book.h"

namespace kpTables::bookkeeping {

struct BackupOptions {
    std::string path;           ///< the copy's file
    std::string bookFile = {};  ///< the book's own file, which is never overwritten or moved; empty: it has none
    /// Generations to keep: path is the newest, then path.1, path.2, ... 0: an existing file is refused.
    int keep = 0;
    /// Opens the copy, to check it.
    std::function<BookPtr(const std::string& path)> open;
    /// Makes the copy; empty: Book::BackUp does.
    std::function<void(const std::string& path)> copy = {};
};

/// Copies a book, also while it is in use, and opens the copy to check it: one that is not whole is removed, and older
/// generations move up only after that. With one generation, an existing file that is no book is refused. An Error says
/// what went wrong; the copies that were there are then as they were.
void BackUpBook(Book& book, const BackupOptions& options);

}  // namespace kpTables::bookkeeping
