// The functions of both dialects.
#pragma once

#include <vector>

#include "sql/sqlite/ExpressionTranslator.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

/// SqlError Unsupported for a function that is not known, Syntax for a wrong number of arguments.
Term CallTerm(const Call& call, const ExpressionContext& context);

/// CASE operand WHEN condition THEN result ... ELSE the last result END; operand without text: the searched form, and
/// without as many results as that: no ELSE. The results are brought to one type.
Term ChoiceTerm(Session& session, const Term& operand, std::vector<Term> conditions, std::vector<Term> results);

}  // namespace kpTables::sql
