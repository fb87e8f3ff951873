// The operators that compute a number, a date or a text.
#pragma once

#include "sql/sqlite/Session.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

/// left op right for + - * / \ Mod ^ and &, with Jet's result types: Currency stays exact with Currency and with whole
/// numbers, and becomes a Double beside one.
Term ArithmeticTerm(Session& session, BinaryOperator op, Term left, Term right);

Term NegatedTerm(Session& session, Term operand);

}  // namespace kpTables::sql
