// The tables of a query and how they are joined.
#pragma once

#include <string>
#include <vector>

#include "sql/Tree.h"
#include "sql/sqlite/Scope.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

/// A table that is joined to what the clause names before it.
struct TableJoin {
    std::string table;  ///< its name and alias, as in the clause's text
    std::string on;
    const Source* source;
    const Expression* condition;
    bool optional;  ///< rows without a match are kept

    /// " LEFT JOIN ... ON ...", or an inner one.
    std::string Text() const;
};

struct FromText {
    std::string first;  ///< " FROM ..." without the joins, "" for none
    std::vector<TableJoin> joins;
    /// Of a clause that begins with a table: its name and alias, and the table.
    std::string firstTable;
    const Source* firstSource = nullptr;

    std::string Text() const;
};

/// Adds every table of the clause to the scope, in the order in which the statement writes them, and gives the clause's
/// text. Right joins are turned around, so that SQLite starts at the table whose rows are all kept.
/// outer: the names that queries in the clause see.
FromText TranslateFrom(Session& session, const std::vector<TablePtr>& from, Scope& scope, const Scope* outer);

/// What a qualifier may call the tables of a clause.
std::vector<std::string> TableNames(const std::vector<TablePtr>& from);

}  // namespace kpTables::sql
