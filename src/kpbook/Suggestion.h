// What may have been meant by a name that there is not.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "kpTables/Book.h"
#include "kpTables/Error.h"

namespace kpTables::kpbook {

/// "; did you mean B?" or "; did you mean B, C or D?": the names that differ least from the given one, without regard
/// to the case of ASCII letters, by no more than a third of its characters (one in a name of two or three). "" when
/// none is near.
std::string DidYouMean(std::string_view given, std::span<const std::string_view> names);
/// The same for a method.
std::string MethodMeant(std::string_view given);
/// The error of a statement; where a table or a column is unknown, with those of the book that may be meant.
DatabaseError WithSuggestion(const DatabaseError& error, Book& book);

}  // namespace kpTables::kpbook
