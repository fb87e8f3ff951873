// What GROUP BY allows.
#pragma once

#include <functional>
#include <vector>

#include "kpTables/text/Message.h"
#include "sql/Tree.h"
#include "sql/bind/Context.h"
#include "sql/bind/Scope.h"

namespace kpTables::sql::bind {

inline constexpr const char* kNoAggregateInWhere =
    Translatable("cannot have an aggregate function in the WHERE clause");

/// True when the expression contains an aggregate, not counting those of its sub-queries.
bool HasAggregate(const Expression& expression);

/// Calls visit for every direct operand, except inside sub-queries.
void ForEachOperand(const Expression& expression, const std::function<void(const Expression&)>& visit);

/// True when both expressions are equal by their names and constants. The literals compared are fixed.
bool SameExpression(Context& context, const Scope& scope, const Expression& a, const Expression& b);

/// SqlError when the expression reads a column that is neither grouped by nor inside an aggregate.
/// isDetermined: whether a column that is no key has one value in each group.
void CheckGrouped(Context& context, const Scope& scope, const Expression& expression,
                  const std::vector<const Expression*>& groups,
                  const std::function<bool(const Scope::Meaning&)>& isDetermined = {});

}  // namespace kpTables::sql::bind
