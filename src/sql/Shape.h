// What statements that differ in their literals alone have in common.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sql/Tree.h"

namespace kpTables::sql {

/// The text with every number, quoted text and date taken out and blanks made one, so that two statements that differ
/// in their literals alone have the same shape; the literals are appended to values. Raises what the lexer raises.
std::string Shape(std::string_view text, std::vector<LiteralValue>& values);

}  // namespace kpTables::sql
