#include "sql/bind/StatementBinder.h"

#include <iterator>
#include <string>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/SqlError.h"
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

SchemaChange BindDropTable(Context& context, const DropTableStatement& statement) {
    if (!statement.ifExists || context.Tables().Find(statement.table)) return BindDrop(context, statement);
    return {&statement};
}

void BindCommonTables(Context& context, const Statement& statement, BoundStatement& bound) {
    for (const CommonTable& table : statement.with) {
        if (context.FindCommon(table.name))
            throw SqlError(ErrorKind::Syntax, Message("the name '{1}' stands twice in WITH", table.name), table.offset);
        // No statement can contain such a name.
        context.AddCommon({table.name, table.columns, nullptr, "common " + std::to_string(bound.with.size() + 1)});
        auto query = std::make_shared<Query>(BindQuery(context, *table.query, nullptr, QueryUse::Table));
        const std::size_t columns = query->Columns().size();
        if (!table.columns.empty() && table.columns.size() != columns)
            throw SqlError(
                ErrorKind::Syntax,
                Message("'{1}' names {2} columns, its query has {3}", table.name, table.columns.size(), columns),
                table.offset);
        Context::Common& common = context.CommonTables().back();
        common.query = query;
        bound.with.push_back({common.label, std::move(query)});
    }
}

// What the binding has gathered besides. A list of the book stands before the queries that read it.
void Finish(Context& context, BoundStatement& bound) {
    bound.staysAsWritten = context.StaysAsWritten();
    std::vector<CommonQuery> lists = context.TakeLists();
    bound.with.insert(bound.with.begin(), std::make_move_iterator(lists.begin()), std::make_move_iterator(lists.end()));
}

}  // namespace

BoundStatement BindStatement(const Statement& statement, const Catalog& catalog,
                             const std::vector<LiteralValue>& pivotValues) {
    BoundStatement bound;
    bound.kind = statement.kind;
    bound.fixedLiterals = statement.fixedLiterals;
    Context context(catalog, statement.dialect, bound.fixedLiterals);
    BindCommonTables(context, statement, bound);
    const auto query = [&](Query made) { bound.query = std::make_shared<Query>(std::move(made)); };
    switch (statement.kind) {
        case StatementKind::Select:
            query(BindQuery(context, *AsStatement<SelectStatement>(statement).query, nullptr, QueryUse::Result));
            break;
        case StatementKind::SelectInto:
            query(BindQuery(context, *AsStatement<SelectIntoStatement>(statement).query, nullptr, QueryUse::Result));
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
            bound.schema = BindDropTable(context, AsStatement<DropTableStatement>(statement));
            break;
        case StatementKind::DropIndex:
            bound.schema = BindDrop(context, AsStatement<DropIndexStatement>(statement));
            break;
        case StatementKind::AddColumn:
            bound.schema = BindAddColumn(context, AsStatement<AddColumnStatement>(statement));
            break;
        case StatementKind::AlterColumn:
            bound.schema = BindAlterColumn(context, AsStatement<AlterColumnStatement>(statement));
            break;
        case StatementKind::DropColumn:
            bound.schema = BindDropColumn(context, AsStatement<DropColumnStatement>(statement));
            break;
        case StatementKind::Session:
            throw SqlError(ErrorKind::Unsupported, Message("a statement of the connection stands alone"), 0);
    }
    Finish(context, bound);
    return bound;
}

std::optional<BoundStatement> BindCells(const TransformStatement& statement, const Catalog& catalog,
                                        CellLayout& layout) {
    BoundStatement bound;
    bound.fixedLiterals = statement.fixedLiterals;
    Context context(catalog, statement.dialect, bound.fixedLiterals);
    BindCommonTables(context, statement, bound);
    auto query = BindCellRows(context, statement, layout);
    if (!query) return std::nullopt;
    bound.query = std::make_shared<Query>(std::move(*query));
    Finish(context, bound);
    return bound;
}

BoundStatement BindPivotQuery(const TransformStatement& statement, const Catalog& catalog) {
    BoundStatement bound;
    bound.fixedLiterals = statement.fixedLiterals;
    Context context(catalog, statement.dialect, bound.fixedLiterals);
    bound.query = std::make_shared<Query>(BindPivotValues(context, statement));
    Finish(context, bound);
    return bound;
}

}  // namespace kpTables::sql::bind
