// Parser of tokens.
#pragma once

#include <span>
#include <string_view>

#include "sql/Dialect.h"
#include "sql/Tree.h"

namespace kpTables::sql::parse {

/// Reads exactly one statement; named: the values of the names in it. Raises SqlError with line, column and token on
/// anything else.
StatementPtr Parse(std::string_view text, std::span<const NamedLiteral> named = {}, Dialect dialect = Dialect::Jet);

}  // namespace kpTables::sql::parse
