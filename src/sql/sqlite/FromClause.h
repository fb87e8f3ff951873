// The tables of a query and how they are joined.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sql/Tree.h"
#include "sql/sqlite/Scope.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

/// What a clause joins last, where that is a table.
struct LastJoin {
    std::string before;  ///< the clause's text without it
    std::string table;   ///< its name and alias, as in the clause's text
    const Source* source;
    const Expression* condition;
    bool optional;  ///< rows without a match are kept
};

struct FromText {
    std::string text;  ///< " FROM ...", "" for none
    std::optional<LastJoin> last;
};

/// Adds every table of the clause to the scope, in the order in which the statement writes them, and gives the clause's
/// text. Right joins are turned around, so that SQLite starts at the table whose rows are all kept.
/// outer: the names that queries in the clause see.
FromText TranslateFrom(Session& session, const std::vector<TablePtr>& from, Scope& scope, const Scope* outer);

/// What a qualifier may call the tables of a clause.
std::vector<std::string> TableNames(const std::vector<TablePtr>& from);

}  // namespace kpTables::sql
