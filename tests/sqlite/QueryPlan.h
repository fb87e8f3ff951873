// How SQLite is going to answer a text.
#pragma once

#include <string>
#include <string_view>

#include "engines/sqlite/Database.h"

namespace kpTables::test {

/// The steps of the plan for a text of SQLite's own, joined with "; ".
std::string PlanOf(const sqlite::Database& database, std::string_view text);

}  // namespace kpTables::test
