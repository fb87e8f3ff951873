// The line and column of a byte of a statement.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "sql/SqlError.h"

namespace kpTables::sql {

/// Both count from 1; a column is a character, not a byte.
struct Position {
    std::size_t line = 1;
    std::size_t column = 1;
};

Position Locate(std::string_view text, std::size_t offset);

/// "line 1, column 8": how every message names a place in a text.
std::string PlaceText(Position at);

/// 'Syntax error at line 1, column 8 near "Fro": <complaint>'; without a token, "at the end" when the offset is the
/// text's end. A long token is cut.
SqlError SyntaxError(std::string_view text, std::size_t offset, std::string_view token, std::string_view complaint);

}  // namespace kpTables::sql
