// The tables of a book, made on the server.
#pragma once

#include <cstdint>
#include <string>

#include "engines/postgres/Database.h"
#include "kpTables/Book.h"

namespace kpTables::engines::postgres {

/// Makes the tables of the schema, in the connection's schema and the open transaction.
void MakeTables(Database& database, HeaderDialect header);

/// The statements that make and fill kp_book, in which a book notes its format. schema: with a point behind it, or ""
/// for the connection's.
std::string BookNoteText(std::int64_t format, const std::string& schema);

/// The dialect whose names the columns of the connection's schema have.
HeaderDialect DialectOf(Database& database);

}  // namespace kpTables::engines::postgres
