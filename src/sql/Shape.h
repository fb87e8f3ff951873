// The common form of statements that differ only in their literals.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sql/Dialect.h"
#include "sql/Tree.h"

namespace kpTables::sql {

/// The text with every number, quoted text and date replaced and each run of blanks reduced to one, so that statements
/// that differ only in literals have the same shape; appends the literals to values. A name has the shape of the value
/// that named gives it. A text that is read in SQL Server's dialect has another shape. Raises what the lexer raises.
std::string Shape(std::string_view text, std::vector<LiteralValue>& values, std::span<const NamedLiteral> named = {},
                  Dialect dialect = Dialect::Jet);

}  // namespace kpTables::sql
