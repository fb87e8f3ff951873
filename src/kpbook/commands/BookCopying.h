// Copying a book's rows into a new book, for copy and backup.
#pragma once

#include <string>

#include "kpTables/bookkeeping/BookCopy.h"
#include "kpbook/Workspace.h"

namespace kpTables::kpbook::commands {

/// Whether a book is a file, which is copied as it is.
bool IsFile(const std::string& url);

/// Makes the book at url from the rows of an open one, with a bar at a terminal; says what was left behind.
bookkeeping::BookCopy CopyRows(const Workspace& from, const std::string& url, const GlobalOptions& global);

}  // namespace kpTables::kpbook::commands
