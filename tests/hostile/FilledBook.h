// A book in memory with rows in every table, and what its tables hold.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

#include "kpTables/Book.h"

namespace kpTables::test {

/// Two rows in every table: the texts are "a" and "b", the numbers 1 and 2.
BookPtr FilledBook();

/// Each table by name, with all of its rows as text.
using Contents = std::map<std::string, std::string>;
Contents ContentsOf(Book& book);
/// The tables whose rows differ.
std::set<std::string> Changed(const Contents& before, const Contents& after);
/// The table that a statement writes, or that is opened; "" for a query.
std::string WrittenTable(std::string_view kind, std::string_view text);
/// A text as it stands in ContentsOf when it fills a cell.
std::string CellText(std::string_view text);

}  // namespace kpTables::test
