// The operators on conditions.
#pragma once

#include <vector>

#include "sql/sqlite/Session.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

/// Terms joined by one AND or OR. A True beside AND and a False beside OR leave no trace.
Term JoinedConditions(Session& session, BinaryOperator op, std::vector<Term> terms);

/// left op right for Xor, Eqv and Imp.
Term LogicalTerm(Session& session, BinaryOperator op, Term left, Term right);

Term NotTerm(Session& session, Term operand);

}  // namespace kpTables::sql
