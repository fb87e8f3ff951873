// UPDATE and DELETE of a table that is joined with others.
#include <algorithm>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/QueryBinder.h"
#include "sql/bind/Stored.h"

namespace kpTables::sql::bind {

namespace {

// What identifies a row of the table, the same for any source of it.
TermPtr RowKey(const SourcePtr& source) {
    for (std::size_t i = 0; i < source->columns.size(); ++i)
        if (source->columns[i].counter) return ColumnOf(source, i);
    return std::make_shared<RowIdTerm>(source);
}

[[noreturn]] void RefuseTarget(const std::string& why, std::size_t offset) {
    throw SqlError(ErrorKind::Syntax, why, offset);
}

class JoinedChange {
public:
    JoinedChange(Context& context, const std::vector<sql::TablePtr>& from)
        : context_(context), scope_(nullptr), tables_(BindFrom(context, from, scope_, nullptr)) {}

    const Scope& Names() const noexcept { return scope_; }
    const SourcePtr& Target() const noexcept { return target_; }

    // The target by an alias or a name of FROM; a table that stands there once may be named by its own name, and one
    // that does not stand there is joined with the others.
    void FindTarget(const std::string& name, const std::string& alias, std::size_t offset) {
        const std::string& wanted = alias.empty() ? name : alias;
        for (const SourcePtr& source : scope_.Sources())
            if (SameName(source->name, wanted)) return SetTarget(source, offset);
        const CatalogTable& table = context_.Table(name, offset);
        std::vector<SourcePtr> same;
        for (const SourcePtr& source : scope_.Sources())
            if (source->table == &table) same.push_back(source);
        if (same.size() > 1) RefuseTarget(Message("the table '{1}' stands twice in FROM: name an alias", name), offset);
        if (same.size() == 1) return SetTarget(same.front(), offset);
        SourcePtr added = SourceOfTable(table, name, alias);
        scope_.Add(added, offset);
        tables_.insert(tables_.begin(), TableOf(added));
        SetTarget(added, offset);
    }

    // The table of the columns that are assigned.
    void FindTarget(const UpdateStatement& statement) {
        for (const auto& assignment : statement.assignments) {
            const Column column(assignment.table, assignment.column, assignment.offset);
            scope_.Resolve(column);
            const SourcePtr source = scope_.Lookup(column).source;
            if (target_ && source != target_)
                throw SqlError(ErrorKind::Unsupported,
                               Message("a statement changes one table: write an UPDATE for each"), assignment.offset);
            SetTarget(source, assignment.offset);
        }
    }

    void BindWhere(const ExpressionPtr& where) {
        if (!where) return;
        TermPtr condition = BindCondition(*where, {context_, scope_, kNoAggregateInStatement});
        if (!IsTrue(*condition)) where_ = std::move(condition);
    }

    // The query of the target's rows, with values behind their keys.
    QueryPtr Rows(std::vector<Output> values, QueryUse use) {
        Select select;
        select.from = std::move(tables_);
        select.where = std::move(where_);
        select.items.push_back({RowKey(target_), "row"});
        for (Output& value : values) select.items.push_back(std::move(value));
        return std::make_shared<Query>(QueryOf(std::move(select), use));
    }

private:
    void SetTarget(const SourcePtr& source, std::size_t offset) {
        if (!source->table) RefuseTarget(Message("rows of a query cannot be changed, only those of a table"), offset);
        target_ = source;
    }

    Context& context_;
    Scope scope_;
    std::vector<TablePtr> tables_;
    SourcePtr target_;
    TermPtr where_;
};

}  // namespace

Update BindJoinedUpdate(Context& context, const UpdateStatement& statement) {
    JoinedChange change(context, statement.from);
    if (statement.table.empty())
        change.FindTarget(statement);
    else
        change.FindTarget(statement.table, statement.alias, statement.offset);
    const SourcePtr& target = change.Target();
    const CatalogTable& table = *target->table;
    std::vector<std::string> names;
    for (const auto& assignment : statement.assignments) names.push_back(assignment.column);
    Update update;
    std::vector<Output> values;
    for (const auto& assignment : statement.assignments) {
        if (!assignment.table.empty() && !SameName(assignment.table, target->name) &&
            !SameName(assignment.table, table.name))
            RefuseTarget(Message("the statement changes '{1}', not '{2}'", target->name, assignment.table),
                         assignment.offset);
        if (IsRepeated(table, assignment.column, names)) continue;
        const CatalogColumn& column = RequireStoredColumn(table, assignment.column, assignment.offset);
        TermPtr value = BindExpression(*assignment.value, {context, change.Names(), kNoAggregateInStatement});
        values.push_back({ColumnValue(context, std::move(value), column), column.name});
        update.assignments.push_back({&column, nullptr});
    }
    change.BindWhere(statement.where);
    update.from = SourceOf(change.Rows(std::move(values), QueryUse::Table));
    for (std::size_t i = 0; i < update.assignments.size(); ++i)
        update.assignments[i].value = ColumnOf(update.from, i + 1);
    const SourcePtr written = SourceOfTable(table, table.name, {});
    update.target = written;
    update.where = Compare(ComparisonOperator::Equal, RowKey(written), ColumnOf(update.from, 0));
    return update;
}

Delete BindJoinedDelete(Context& context, const DeleteStatement& statement) {
    JoinedChange change(context, statement.from);
    change.FindTarget(statement.table, statement.alias, statement.offset);
    change.BindWhere(statement.where);
    const SourcePtr written = SourceOfTable(*change.Target()->table, change.Target()->table->name, {});
    Delete erase;
    erase.target = written;
    erase.where = std::make_shared<InQueryTerm>(RowKey(written), change.Rows({}, QueryUse::Value), false);
    return erase;
}

}  // namespace kpTables::sql::bind
