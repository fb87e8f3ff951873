// Parser of tokens.
#pragma once

#include <string_view>

#include "sql/Tree.h"

namespace kpTables::sql::parse {

/// Reads exactly one statement. Raises SqlError with line, column and token on anything else.
StatementPtr Parse(std::string_view text);

}  // namespace kpTables::sql::parse
