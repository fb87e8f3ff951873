// The book that hosts get of every engine.
#pragma once

#include <string>

#include "engines/common/Executor.h"
#include "kpTables/Book.h"

namespace kpTables::engines {

/// The book over an open database that has a book's tables.
BookPtr MakeBook(std::string url, ExecutorPtr executor);

/// Runs the statements of the book's schema.
void CreateBookTables(Executor& executor);

}  // namespace kpTables::engines
