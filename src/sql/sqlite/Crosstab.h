// TRANSFORM ... PIVOT.
#pragma once

#include <vector>

#include "sql/Translation.h"
#include "sql/Tree.h"
#include "sql/sqlite/QueryTranslator.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

/// The select items, the aggregate over all rows of a group when it has an alias, then a column for each pivot value:
/// those of the IN list, else the given ones.
QueryText TranslateCrosstab(Session& session, const TransformStatement& statement,
                            const std::vector<LiteralValue>& pivotValues);

/// The pivot values in ascending order.
QueryText TranslatePivotValues(Session& session, const TransformStatement& statement);

}  // namespace kpTables::sql
