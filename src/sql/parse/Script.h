// Takes a text with several statements apart.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sql/Position.h"

namespace kpTables::sql::parse {

struct ScriptPart {
    std::string text;     ///< from its first character on, without the semicolon; comments are blanks
    Position begin;       ///< of its first character in the whole text
    bool ended = false;   ///< by a semicolon; only the last part may lack it
    std::size_t end = 0;  ///< behind it and its semicolon: a byte of the whole text
};

/// The statements between the semicolons that are not in quotes, brackets, dates or comments (-- to the end of the
/// line, /* to */). Reads anything: what is wrong with a statement shows when it is run.
std::vector<ScriptPart> SplitScript(std::string_view text);

}  // namespace kpTables::sql::parse
