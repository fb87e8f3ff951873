// Translates one statement's tree to an engine's text: binds, rewrites, prints.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "sql/Catalog.h"
#include "sql/Translation.h"
#include "sql/Tree.h"
#include "sql/print/Engine.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql {

/// Raises SqlError for an unknown table or column, operands of incompatible types, and what the engine does not
/// support.
/// pivotValues: for TRANSFORM, the values of its PIVOT expression in the order of the columns (see
/// TranslatePivotQuery), each in its default text form, which becomes the column's name; else empty.
Translation Translate(const Statement& statement, const Catalog& catalog, const print::Engine& engine,
                      const std::vector<LiteralValue>& pivotValues = {},
                      std::span<const rewrite::Rule> rules = rewrite::Rules());

/// CREATE TABLE of the table that SELECT ... INTO makes. SqlError for a column whose type cannot be told.
std::unique_ptr<CreateTableStatement> NewTableOf(const SelectIntoStatement& statement, const Catalog& catalog);

/// For a TRANSFORM without an IN list: the query that lists its pivot values in ascending order, Null included.
Translation TranslatePivotQuery(const TransformStatement& statement, const Catalog& catalog,
                                const print::Engine& engine, std::span<const rewrite::Rule> rules = rewrite::Rules());

/// Likewise, for an engine that reads cells: the query of all cells, so that the lines are read once. Nothing where the
/// columns cannot be put together from the cells: only sums and counts are added up, of groups with whole numbers as
/// keys.
std::optional<CellsTranslation> TranslateCells(const TransformStatement& statement, const Catalog& catalog,
                                               const print::Engine& engine,
                                               std::span<const rewrite::Rule> rules = rewrite::Rules());

}  // namespace kpTables::sql
