// The statements that make a book's tables, as a script for each dialect.
#pragma once

#include <string>
#include <vector>

namespace kpTables::engines {

/// The names of the dialects.
std::vector<std::string> SchemaDialects();

/// A script, its statements ended by semicolons. dialect: one of the names.
std::string SchemaScript(const std::string& dialect);

}  // namespace kpTables::engines
