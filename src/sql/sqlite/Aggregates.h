// COUNT, SUM, AVG, MIN, MAX, FIRST and LAST.
#pragma once

#include <string_view>

#include "sql/sqlite/ExpressionTranslator.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

bool IsAggregate(std::string_view function);

/// SqlError when an aggregate may not stand there or stands within another.
Term AggregateTerm(const Call& call, const ExpressionContext& context);

}  // namespace kpTables::sql
