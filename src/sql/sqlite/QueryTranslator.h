// Queries: SELECTs, unions of them, and their order.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "sql/Translation.h"
#include "sql/Tree.h"
#include "sql/sqlite/Scope.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

/// What a query is for; only a result, and the first rows of an order, need its ORDER BY.
enum class QueryUse {
    Result,     ///< the statement itself
    Table,      ///< in FROM: every column has a name of its own
    Value,      ///< in an expression
    Existence,  ///< of EXISTS
};

struct QueryText {
    std::string text;
    std::vector<ResultColumn> columns;
    std::vector<std::string> names;       ///< of a Table: what the columns are called in the text
    std::vector<std::string> tableNames;  ///< what the tables of its FROM clauses are called
    /// Of a Table: the second column has one value for each value of the first.
    std::vector<std::pair<std::size_t, std::size_t>> implied;
};

/// outer: the names that the query sees beside its own tables, or nullptr.
QueryText TranslateQuery(Session& session, const Query& query, const Scope* outer, QueryUse use);

}  // namespace kpTables::sql
