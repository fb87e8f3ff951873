// One statement's way from its tree to an engine's text: bound, rewritten, printed.
#pragma once

#include <span>
#include <vector>

#include "sql/Catalog.h"
#include "sql/Translation.h"
#include "sql/Tree.h"
#include "sql/print/Engine.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql {

/// Raises SqlError for a table or a column that is not there, operands whose types do not go together, and what the
/// engine cannot be made to do.
/// pivotValues: for TRANSFORM, the values of its PIVOT expression in the order of the columns (see
/// TranslatePivotQuery), each in its default text form, which becomes the column's name; else empty.
Translation Translate(const Statement& statement, const Catalog& catalog, const print::Engine& engine,
                      const std::vector<LiteralValue>& pivotValues = {},
                      std::span<const rewrite::Rule> rules = rewrite::Rules());

/// For a TRANSFORM without an IN list: the query that lists its pivot values in ascending order, Null among them.
Translation TranslatePivotQuery(const TransformStatement& statement, const Catalog& catalog,
                                const print::Engine& engine, std::span<const rewrite::Rule> rules = rewrite::Rules());

}  // namespace kpTables::sql
