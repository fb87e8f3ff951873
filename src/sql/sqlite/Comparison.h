// Tests of values against each other.
#pragma once

#include <vector>

#include "sql/sqlite/Session.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

/// left op right for = <> < <= > >=. Both sides are brought to what they are compared as: Currency against any other
/// number in ten-thousandths, a date against a text as a date. SqlError TypeMismatch for a text against a number.
/// A bill's date against a constant compares its three columns, so that an index on them answers.
Term ComparisonTerm(Session& session, BinaryOperator op, Term left, Term right);

Term BetweenTerm(Session& session, Term operand, Term low, Term high, bool negated);

Term InListTerm(Session& session, Term operand, std::vector<Term> items, bool negated);

/// CASE operand WHEN value ...: brings the operand and the values to what they are compared as, in place.
void MakeComparable(Session& session, Term& operand, std::vector<Term*> values);

/// The operand of IN (query) for a query whose one column has that type.
Term MembershipOperand(Session& session, Term operand, Type column);

}  // namespace kpTables::sql
