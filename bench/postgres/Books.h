// Books on the server, and copies of them for each run.
#pragma once

#include <string>

#include "../BookMaker.h"

namespace kpTables::bench {

/// Makes a book of this size on the server, through a book in a file.
void MakeServerBook(const std::string& book, const BookSize& size, const std::string& folder);
/// A copy made on the server, with statistics and nothing left to write.
void CloneServerBook(const std::string& book, const std::string& copy);
void DropServerBook(const std::string& book);

}  // namespace kpTables::bench
