// The statements of the book's schema in other words.
#pragma once

#include <string>

#include "sql/print/Engine.h"

namespace kpTables::engines {

// Scripts, each statement ended by a semicolon.

/// In an engine's own words.
std::string SchemaIn(const sql::print::Engine& engine);
/// For Jet itself, which knows no computed columns: they are plain ones.
std::string JetSchema();
/// For SQL Server, with its names of the columns that have others there.
std::string SqlServerSchema();

}  // namespace kpTables::engines
