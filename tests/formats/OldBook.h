// The books of the folder books/, and what a file holds below the tables that hosts see.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "engines/sqlite/Database.h"

namespace kpTables::test {

/// The names in the folder, in order, without their extensions.
std::vector<std::string> OldBooks();
/// Writes one of them to a path.
void UnpackBook(const std::string& name, const std::string& path);

/// Opens a file as it is, whatever its format.
engines::sqlite::Database OpenRaw(const std::string& path);

/// The CREATE statements of tables, indexes, triggers and views, by name, without the engine's own.
using Schema = std::map<std::string, std::string>;
Schema SchemaOf(const std::string& path);

/// The columns of each table that have values of their own.
using Columns = std::map<std::string, std::vector<std::string>>;
Columns ColumnsOf(const std::string& path);
/// The rows of each table with their ids, in these columns, as SQL literals.
std::map<std::string, std::string> RowsOf(const std::string& path, const Columns& columns);

}  // namespace kpTables::test
