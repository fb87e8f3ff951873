// The version of a book's schema that was last found whole, noted in the book.
#pragma once

#include <cstdint>

#include "engines/sqlite/Database.h"

namespace kpTables::engines::sqlite {

/// A number that rises with every change of a table or index.
std::int64_t SchemaVersion(const Database& database);

void MakeSchemaNote(const Database& database);
/// The same as a statement, ended by a semicolon.
std::string SchemaNoteScript();
void WriteSchemaNote(const Database& database, std::int64_t version);
/// -1 when nothing is noted.
std::int64_t ReadSchemaNote(const Database& database);

/// Writes the note to a book's file without waiting for others, and not at all where that is impossible: the schema is
/// then compared again next time.
void TryWriteSchemaNote(const Database& database, std::int64_t version) noexcept;

}  // namespace kpTables::engines::sqlite
