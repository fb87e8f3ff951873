// Suggestions for names of the component and of a book.
#pragma once

#include <string>
#include <string_view>

#include "kpTables/Book.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/DidYouMean.h"

namespace kpTables::kpbook {

using bookkeeping::DidYouMean;

/// The methods of the component that may be meant.
std::string MethodMeant(std::string_view given);
/// The error of a statement; where a table or a column is unknown, with those of the book that may be meant.
DatabaseError WithSuggestion(const DatabaseError& error, Book& book);

}  // namespace kpTables::kpbook
