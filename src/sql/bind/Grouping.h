// What may stand beside GROUP BY.
#pragma once

#include <functional>
#include <vector>

#include "sql/Tree.h"
#include "sql/bind/Context.h"
#include "sql/bind/Scope.h"

namespace kpTables::sql::bind {

/// True when an aggregate stands in the expression, those of queries within it aside.
bool HasAggregate(const Expression& expression);

/// Calls visit for every direct operand, those inside queries aside.
void ForEachOperand(const Expression& expression, const std::function<void(const Expression&)>& visit);

/// True when both expressions mean the same by their names and constants. The literals that made them equal are
/// fixed.
bool SameExpression(Context& context, const Scope& scope, const Expression& a, const Expression& b);

/// SqlError when the expression reads a column that is neither grouped by nor inside an aggregate.
/// isDetermined: whether a column has one value in each group although it is no key.
void CheckGrouped(Context& context, const Scope& scope, const Expression& expression,
                  const std::vector<const Expression*>& groups,
                  const std::function<bool(const Scope::Meaning&)>& isDetermined = {});

}  // namespace kpTables::sql::bind
