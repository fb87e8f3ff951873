// The tables of a query and how they are joined.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sql/Tree.h"
#include "sql/sqlite/Scope.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

/// Adds every table of the clause to the scope, in the order in which the statement writes them, and gives the clause's
/// text, "" for none. Right joins are turned around, so that SQLite starts at the table whose rows are all kept.
/// outer: the names that queries in the clause see.
std::string TranslateFrom(Session& session, const std::vector<TablePtr>& from, Scope& scope, const Scope* outer);

/// What a qualifier may call the tables of a clause.
std::vector<std::string> TableNames(const std::vector<TablePtr>& from);

}  // namespace kpTables::sql
