// The CREATE statement of a table, as SQLite keeps it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kpTables::engines::sqlite {

/// The computed columns that are aliases, each with the column that it refers to, both as spelled in the definition:
/// "CREATE TABLE ... (..., "b" INTEGER AS ("a"))" has b for a. SQLite gives the expression of a computed column nowhere
/// else.
std::vector<std::pair<std::string, std::string>> SecondNames(std::string_view createTable);

/// One of the comma-separated parts of a table's definition.
struct TablePart {
    std::string name;  ///< a column's; "" of a key or another constraint of the table
    std::string text;  ///< as written, without surrounding blanks
};
std::vector<TablePart> TableParts(std::string_view createTable);

}  // namespace kpTables::engines::sqlite
