// What may stand beside GROUP BY.
#pragma once

#include <functional>
#include <vector>

#include "sql/Tree.h"
#include "sql/sqlite/Scope.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

/// True when an aggregate stands in the expression, those of queries within it aside.
bool HasAggregate(const Expression& expression);

/// Calls visit for every direct operand, those inside queries aside.
void ForEachOperand(const Expression& expression, const std::function<void(const Expression&)>& visit);

/// True when both expressions mean the same by their names and constants. The literals that made them equal are
/// fixed.
bool SameExpression(Session& session, const Scope& scope, const Expression& a, const Expression& b);

/// SqlError when the expression reads a column that is neither grouped by nor inside an aggregate.
void CheckGrouped(Session& session, const Scope& scope, const Expression& expression,
                  const std::vector<const Expression*>& groups);

}  // namespace kpTables::sql
