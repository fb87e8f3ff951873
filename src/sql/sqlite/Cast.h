// Conversions that a statement asks for.
#pragma once

#include "sql/Tree.h"
#include "sql/sqlite/Session.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

/// CAST(operand AS type) as the server does it: a number becomes a date counting from 1900-01-01, a double is cut to a
/// whole number, char(n) is padded.
Term CastTerm(Session& session, Term operand, const TypeName& type);

/// CDATE(operand): a literal stays one, so that a comparison can bind it as it needs it.
Term DateTerm(Session& session, Term operand);

}  // namespace kpTables::sql
