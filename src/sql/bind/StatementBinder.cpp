#include "sql/bind/StatementBinder.h"

#include <utility>

#include "sql/bind/QueryBinder.h"

namespace kpTables::sql::bind {

namespace {

template <class Node>
const Node& AsStatement(const Statement& statement) {
    return static_cast<const Node&>(statement);
}

template <class Node>
SchemaChange BindDrop(Context& context, const Node& statement) {
    SchemaChange change{&statement};
    change.table = &context.Table(statement.table, statement.offset);
    return change;
}

}  // namespace

BoundStatement BindStatement(const Statement& statement, const Catalog& catalog,
                             const std::vector<LiteralValue>& pivotValues) {
    BoundStatement bound;
    bound.kind = statement.kind;
    bound.fixedLiterals = statement.fixedLiterals;
    Context context(catalog, statement.dialect, bound.fixedLiterals);
    const auto query = [&](Query made) { bound.query = std::make_shared<Query>(std::move(made)); };
    switch (statement.kind) {
        case StatementKind::Select:
            query(BindQuery(context, *AsStatement<SelectStatement>(statement).query, nullptr, QueryUse::Result));
            break;
        case StatementKind::Transform:
            query(BindCrosstab(context, AsStatement<TransformStatement>(statement), pivotValues));
            break;
        case StatementKind::Insert:
            bound.insert = BindInsert(context, AsStatement<InsertStatement>(statement));
            break;
        case StatementKind::Update:
            bound.update = BindUpdate(context, AsStatement<UpdateStatement>(statement));
            break;
        case StatementKind::Delete:
            bound.erase = BindDelete(context, AsStatement<DeleteStatement>(statement));
            break;
        case StatementKind::CreateTable:
            bound.schema = BindCreateTable(context, AsStatement<CreateTableStatement>(statement));
            break;
        case StatementKind::CreateIndex:
            bound.schema = BindCreateIndex(context, AsStatement<CreateIndexStatement>(statement));
            break;
        case StatementKind::DropTable:
            bound.schema = BindDrop(context, AsStatement<DropTableStatement>(statement));
            break;
        case StatementKind::DropIndex:
            bound.schema = BindDrop(context, AsStatement<DropIndexStatement>(statement));
            break;
        case StatementKind::AddColumn:
            bound.schema = BindAddColumn(context, AsStatement<AddColumnStatement>(statement));
            break;
    }
    return bound;
}

BoundStatement BindPivotQuery(const TransformStatement& statement, const Catalog& catalog) {
    BoundStatement bound;
    bound.fixedLiterals = statement.fixedLiterals;
    Context context(catalog, statement.dialect, bound.fixedLiterals);
    bound.query = std::make_shared<Query>(BindPivotValues(context, statement));
    return bound;
}

}  // namespace kpTables::sql::bind
