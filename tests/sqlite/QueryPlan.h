// How SQLite is going to answer a text.
#pragma once

#include <string>
#include <string_view>

#include "engines/sqlite/Database.h"

namespace kpTables::test {

/// The steps of the plan for a text of SQLite's own, joined with "; ".
std::string PlanOf(const engines::sqlite::Database& database, std::string_view text);

/// Empty for the versions of SQLite whose plans the tests expect, those of 3.40; else why a test is skipped: other
/// versions may plan and describe the same text otherwise.
std::string OtherPlans();

}  // namespace kpTables::test
