// The Book that every engine gives hosts.
#pragma once

#include <string>

#include "engines/common/Executor.h"
#include "kpTables/Book.h"

namespace kpTables::engines {

/// The book in an open database with a book's tables.
BookPtr MakeBook(std::string url, ExecutorPtr executor);

/// Runs the statements of the book's schema.
void CreateBookTables(Executor& executor);

}  // namespace kpTables::engines
