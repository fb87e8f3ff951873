// What may be meant by the word before the cursor.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Book.h"

namespace kpTables::kpbook::shell {

struct Completion {
    std::size_t from = 0;            ///< where the word begins in the text before the cursor
    std::vector<std::string> texts;  ///< what it may become, in the order of the names
};

/// The beginning that all of them have, whole characters; at least one text.
std::string CommonBeginning(const std::vector<std::string>& texts);

/// For a line of the shell. before: the line up to the cursor; statement: the lines of the statement above it. At the
/// beginning of the line commands are meant; behind .call methods; in a statement tables, the columns of those that it
/// names, and keywords; behind "X." the columns of the table or alias X.
Completion CompleteLine(const std::string& before, const std::string& statement, const std::vector<TableInfo>& tables);

}  // namespace kpTables::kpbook::shell
