// Statements of both dialects, printed for SQLite.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sql/Catalog.h"
#include "sql/Translation.h"
#include "sql/Tree.h"

namespace kpTables::sql {

/// Names the tables' columns, gives every expression a type and prints the statement. Raises SqlError for a table or a
/// column that is not there, operands whose types do not go together, and what SQLite cannot be made to do.
/// pivotValues: for TRANSFORM, the values of its PIVOT expression in the order of the columns (see PivotQuery), each in
/// its default text form, which becomes the column's name; else empty.
Translation TranslateForSqlite(const Statement& statement, const Catalog& catalog,
                               const std::vector<LiteralValue>& pivotValues = {});

/// For a TRANSFORM without an IN list: the query that lists its pivot values in ascending order, Null among them.
Translation PivotQuery(const TransformStatement& statement, const Catalog& catalog);

/// A name between double quotes, ready for SQLite.
std::string QuoteForSqlite(std::string_view name);

}  // namespace kpTables::sql
