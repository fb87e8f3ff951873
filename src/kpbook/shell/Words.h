// The words of a line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kpTables::kpbook::shell {

/// Splits a line at blanks; a word may have parts in "double" or 'single' quotes, which keep their blanks. A quote in
/// a part is doubled. A CommandError for a quote that is not closed. At least one word, which may be empty.
std::vector<std::string> SplitWords(std::string_view line);

}  // namespace kpTables::kpbook::shell
