// Lines are added up bill by bill before they are joined with their bills, where a query asks for nothing but sums of
// them: then there is a row for each bill to be joined and sorted, not one for each line.
#pragma once

#include "sql/Catalog.h"
#include "sql/Tree.h"

namespace kpTables::sql {

/// In a SELECT or a TRANSFORM of whole tables, the table of the lines becomes a query of their sums. Everything else is
/// left as it is. Sums of money stay exact; those of doubles are added in another order.
void AddUpLines(Statement& statement, const Catalog& catalog);

/// For the query of the pivot values: where these are of the bills, it asks of a bill's lines no more than whether
/// there are any.
void PassOverLines(TransformStatement& statement, const Catalog& catalog);

}  // namespace kpTables::sql
