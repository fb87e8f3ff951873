// What all books of a database share: the schema kp with domains, functions and the order of texts.
#pragma once

#include <string>
#include <string_view>

#include "engines/postgres/Database.h"

namespace kpTables::engines::postgres {

/// Makes it, or brings it up to date; true when there was something to do.
bool MakeSharedSchema(Database& database);

/// An expression: the version of the server's order of texts.
inline constexpr std::string_view kActualIcuVersion =
    "(SELECT pg_collation_actual_version(oid) FROM pg_collation WHERE collname = 'book' AND collnamespace = "
    "'kp'::regnamespace)";

/// Sorts a book's indexes anew when the server's order of texts has another version than the book has noted.
void BringIndexesUpToDate(Database& database, const std::string& book);

}  // namespace kpTables::engines::postgres
