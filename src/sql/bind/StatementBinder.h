// Binds a statement's tree to a book's catalog.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "sql/Catalog.h"
#include "sql/Tree.h"
#include "sql/bind/Context.h"
#include "sql/bind/Query.h"

namespace kpTables::sql::bind {

/// Resolves tables and columns, gives every expression a type and makes every conversion a node. Raises SqlError for an
/// unknown table or column and operands of incompatible types. The bound statement points into both arguments.
/// pivotValues: for TRANSFORM, the values of its PIVOT expression in the order of the columns (see BindPivotQuery),
/// each in its default text form, which becomes the column's name; else empty.
BoundStatement BindStatement(const Statement& statement, const Catalog& catalog,
                             const std::vector<LiteralValue>& pivotValues = {});

/// For a TRANSFORM without an IN list: the query that lists its pivot values in ascending order, Null included.
BoundStatement BindPivotQuery(const TransformStatement& statement, const Catalog& catalog);

/// Likewise: the query of its cells; nothing where they do not make the columns. layout: what its columns are.
std::optional<BoundStatement> BindCells(const TransformStatement& statement, const Catalog& catalog,
                                        CellLayout& layout);

/// The select items, the aggregate over all rows of a group when it has an alias, then a column for each pivot value:
/// those of the IN list, else the given ones.
Query BindCrosstab(Context& context, const TransformStatement& statement, const std::vector<LiteralValue>& pivotValues);
Query BindPivotValues(Context& context, const TransformStatement& statement);
std::optional<Query> BindCellRows(Context& context, const TransformStatement& statement, CellLayout& layout);

Insert BindInsert(Context& context, const InsertStatement& statement);
Update BindUpdate(Context& context, const UpdateStatement& statement);
Delete BindDelete(Context& context, const DeleteStatement& statement);

SchemaChange BindCreateTable(Context& context, const CreateTableStatement& statement);
SchemaChange BindCreateIndex(Context& context, const CreateIndexStatement& statement);
SchemaChange BindAddColumn(Context& context, const AddColumnStatement& statement);
SchemaChange BindAlterColumn(Context& context, const AlterColumnStatement& statement);
SchemaChange BindDropColumn(Context& context, const DropColumnStatement& statement);

/// CREATE TABLE of the table that SELECT ... INTO makes: its columns have the query's names and types; a column of one
/// table keeps its length and, if no row can come twice, its counter.
std::unique_ptr<CreateTableStatement> NewTableOf(const SelectIntoStatement& statement, const Catalog& catalog);

/// The DEFAULT of a column definition as the column stores it, or a call of Date() or Now(). SqlError TypeMismatch for
/// a constant that the type cannot hold, Unsupported for any other expression.
TermPtr BindDefault(Context& context, const Expression& value, Type type);

}  // namespace kpTables::sql::bind
