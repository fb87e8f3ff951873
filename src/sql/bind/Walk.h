// Walks through bound statements, in loops where a chain of operators may be long.
#pragma once

#include <functional>

#include "sql/bind/Query.h"
#include "sql/bind/Term.h"

namespace kpTables::sql::bind {

/// Calls visit for the term and every operand below it, except inside queries.
void ForEachTerm(const Term& term, const std::function<void(const Term&)>& visit);
/// Whether the test holds for the term or an operand below it.
bool AnyTerm(const Term& term, const std::function<bool(const Term&)>& test);
/// Whether an item of the SELECT has an aggregate.
bool ShowsAggregate(const Select& select);
/// Whether the query's text alone says that it has one row at most: all rows make one group, or a counter has a given
/// value.
bool HasOneRowAtMost(const Query& query);

/// Calls visit for every expression of the SELECT as a whole, including join conditions.
void ForEachExpression(const Select& select, const std::function<void(const TermPtr&)>& visit);
/// Calls visit for every expression of the statement outside its queries.
void ForEachExpression(const BoundStatement& statement, const std::function<void(const TermPtr&)>& visit);
/// Calls visit for every query of the statement once, inner queries first.
void ForEachQuery(const BoundStatement& statement, const std::function<void(Query&)>& visit);
/// Every term of the statement, including those of its queries.
void ForEachTerm(const BoundStatement& statement, const std::function<void(const Term&)>& visit);

/// The term with every node replaced by what change returns for it, operands first.
TermPtr Changed(const TermPtr& term, const std::function<TermPtr(const TermPtr&)>& change);
/// Every expression of the SELECT replaced by what change returns for it.
void ChangeExpressions(Select& select, const std::function<TermPtr(const TermPtr&)>& change);

}  // namespace kpTables::sql::bind
