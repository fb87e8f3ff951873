// What SQLite, which keeps no statistics of a book, is told of how many rows a condition leaves.
#pragma once

#include "sql/sqlite/ExpressionTranslator.h"

namespace kpTables::sql {

/// The condition of a SELECT's rows. Where it asks for one value in two tables, and for a range in one of them, the
/// range is marked as one that most rows are in: all months up to one of a warehouse's bills are many rows, the lines
/// of a product are few.
Term TranslateRowCondition(const Expression& condition, const ExpressionContext& context);

}  // namespace kpTables::sql
