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

/// A column in CREATE TABLE; defaultText: "" for none.
std::string ColumnText(const bind::Definition& definition, const std::string& defaultText);
/// The text of CREATE, DROP and ALTER. defaults: of the columns, "" for none.
std::string SchemaChangeText(const bind::SchemaChange& change, const std::vector<std::string>& defaults);

}  // namespace kpTables::sql::print::sqlite
