// The files that make up a book.
#pragma once

#include <string>

namespace kpTables::engines::sqlite {

/// See IsPartOfBook in kpTables/BookFiles.h. book is the path of a book, or empty.
bool IsPartOfBook(const std::string& path, const std::string& book);

}  // namespace kpTables::engines::sqlite
