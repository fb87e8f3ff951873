// SQLite's answers to the printer's hooks. A book keeps Currency as a count of ten-thousandths, dates as ISO text,
// flags as -1 and 0, and texts under a collation of its own.
#pragma once

#include <string>
#include <string_view>

#include "sql/print/Engine.h"

namespace kpTables::sql::print::sqlite {

const Engine& SqliteEngine();

/// A name between double quotes.
std::string QuotedName(std::string_view name);
/// A text between single quotes.
std::string QuotedText(std::string_view text);

/// See Engine.
std::string ColumnText(const bind::Definition& definition, const std::string& defaultText);
std::string KeyText(const bind::SchemaChange& change);

}  // namespace kpTables::sql::print::sqlite
