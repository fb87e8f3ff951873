// INSERT, UPDATE and DELETE.
#include <algorithm>
#include <utility>
#include <vector>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Cast.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/QueryBinder.h"
#include "sql/bind/StatementBinder.h"
#include "sql/bind/Stored.h"

namespace kpTables::sql::bind {

namespace {

// A column for each value; null for a value that is ignored.
std::vector<const CatalogColumn*> InsertColumns(const CatalogTable& table, const InsertStatement& statement) {
    std::vector<const CatalogColumn*> columns;
    for (std::size_t i = 0; i < statement.columns.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j)
            if (SameName(statement.columns[i], statement.columns[j]))
                throw SqlError(ErrorKind::Syntax, Message("the column '{1}' is given twice", statement.columns[j]),
                               statement.columnOffsets[i]);
        const CatalogColumn& column = RequireStoredColumn(table, statement.columns[i], statement.columnOffsets[i]);
        columns.push_back(IsRepeated(table, statement.columns[i], statement.columns) ? nullptr : &column);
    }
    if (statement.columns.empty())
        for (const auto& column : table.columns)
            if (!column.computed) columns.push_back(&column);
    return columns;
}

void CheckCount(std::size_t columns, std::size_t values, std::size_t offset) {
    if (columns != values)
        throw SqlError(ErrorKind::Syntax, Message("there are {1} values for {2} columns", values, columns), offset);
}

Terms BindValues(Context& context, const std::vector<ExpressionPtr>& row, std::size_t offset,
                 const std::vector<const CatalogColumn*>& columns) {
    CheckCount(columns.size(), row.size(), offset);
    const Scope none(nullptr);
    Terms values;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!columns[i]) continue;
        TermPtr value = BindExpression(*row[i], {context, none, kNoAggregateInStatement});
        values.push_back(ColumnValue(context, std::move(value), *columns[i]));
    }
    return values;
}

// Without a list of columns, a counter may be left out.
void DropCounter(std::vector<const CatalogColumn*>& columns, const InsertStatement& statement, std::size_t values) {
    if (!statement.columns.empty() || values + 1 != columns.size()) return;
    const auto counter =
        std::find_if(columns.begin(), columns.end(), [](const auto* column) { return column->counter; });
    if (counter != columns.end()) columns.erase(counter);
}

// The query whose columns are converted to the table's; any but a plain SELECT is put into FROM for that.
QueryPtr BindRows(Context& context, const InsertStatement& statement, std::vector<const CatalogColumn*>& columns) {
    const sql::Query& query = *statement.query;
    const auto& first = query.members.front();
    const bool isSelect = query.members.size() == 1 && first.core && !query.skip;
    const bool plain = isSelect && !first.core->top && !first.core->distinct && !first.core->distinctRow;
    Select select;
    if (plain) {
        SelectBinder binder(context, *first.core, nullptr);
        select = binder.Take();
    } else {
        select = SelectFrom(SourceOf(std::make_shared<Query>(BindQuery(context, query, nullptr, QueryUse::Table))));
    }
    DropCounter(columns, statement, select.items.size());
    CheckCount(columns.size(), select.items.size(), statement.offset);
    std::vector<Output> items;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!columns[i]) continue;
        items.push_back(std::move(select.items[i]));
        items.back().term = ColumnValue(context, std::move(items.back().term), *columns[i]);
    }
    select.items = std::move(items);
    return std::make_shared<Query>(QueryOf(std::move(select), QueryUse::Value));
}

// The one table that a statement changes.
SourcePtr Target(const CatalogTable& table, const std::string& written, const std::string& alias, Scope& scope,
                 std::size_t offset) {
    SourcePtr source = SourceOfTable(table, written, alias);
    scope.Add(source, offset);
    return source;
}

TermPtr BindWhere(Context& context, const ExpressionPtr& where, const Scope& scope) {
    if (!where) return nullptr;
    TermPtr condition = BindCondition(*where, {context, scope, kNoAggregateInStatement});
    return IsTrue(*condition) ? nullptr : condition;
}

// The condition of a change; with TOP n, that the row is among the first n, by id, of those that meet it.
template <class Statement>
TermPtr ChangedRows(Context& context, const Statement& statement, const std::shared_ptr<const Source>& target,
                    const Scope& scope) {
    if (!statement.top) return BindWhere(context, statement.where, scope);
    Scope inner(nullptr);
    const SourcePtr source = Target(*target->table, statement.table, statement.alias, inner, statement.offset);
    Select select;
    select.from.push_back(TableOf(source));
    select.where = BindWhere(context, statement.where, inner);
    select.items.push_back({std::make_shared<RowIdTerm>(source), "row"});
    select.limit = RowLimit{context.WholeNumber(*statement.top)};
    return std::make_shared<InQueryTerm>(std::make_shared<RowIdTerm>(target),
                                         std::make_shared<Query>(QueryOf(std::move(select), QueryUse::Value)), false);
}

}  // namespace

TermPtr ColumnValue(Context& context, TermPtr value, const CatalogColumn& column) {
    if (column.precision > 0 && value->type != Type::Null) {
        TypeName decimal;
        decimal.type = column.type;
        decimal.precision = column.precision;
        decimal.scale = column.scale;
        return BindCast(context, std::move(value), decimal);
    }
    value = AsStored(context, std::move(value), column.type);
    if (column.length == 0 || value->type == Type::Null) return value;
    return Call(
        "fit", {std::move(value), NumberConstant(std::to_string(column.length), Type::Long), TextConstant(column.name)},
        Type::Text);
}

bool IsRepeated(const CatalogTable& table, const std::string& name, const std::vector<std::string>& names) {
    const CatalogColumn* column = FindColumn(table, name);
    return column && column->computed && std::any_of(names.begin(), names.end(), [&](const std::string& other) {
               return SameName(other, column->source);
           });
}

Insert BindInsert(Context& context, const InsertStatement& statement) {
    const CatalogTable& table = context.Table(statement.table, statement.offset);
    Insert insert;
    insert.target = SourceOfTable(table, statement.table, {});
    insert.columns = InsertColumns(table, statement);
    if (statement.query) {
        insert.query = BindRows(context, statement, insert.columns);
    } else if (!statement.rows.empty()) {
        DropCounter(insert.columns, statement, statement.rows.front().size());
        for (const auto& row : statement.rows)
            insert.rows.push_back(BindValues(context, row, statement.offset, insert.columns));
    }
    std::erase(insert.columns, nullptr);
    return insert;
}

Update BindUpdate(Context& context, const UpdateStatement& statement) {
    if (!statement.from.empty()) return BindJoinedUpdate(context, statement);
    const CatalogTable& table = context.Table(statement.table, statement.offset);
    Scope scope(nullptr);
    Update update;
    update.target = Target(table, statement.table, statement.alias, scope, statement.offset);
    std::vector<std::string> names;
    for (const auto& assignment : statement.assignments) names.push_back(assignment.column);
    for (const auto& assignment : statement.assignments) {
        if (IsRepeated(table, assignment.column, names)) continue;
        scope.Resolve(Column(assignment.table, assignment.column, assignment.offset));
        const CatalogColumn& column = RequireStoredColumn(table, assignment.column, assignment.offset);
        TermPtr value = BindExpression(*assignment.value, {context, scope, kNoAggregateInStatement});
        update.assignments.push_back({&column, ColumnValue(context, std::move(value), column)});
    }
    update.where = ChangedRows(context, statement, update.target, scope);
    return update;
}

Delete BindDelete(Context& context, const DeleteStatement& statement) {
    if (!statement.from.empty()) return BindJoinedDelete(context, statement);
    const CatalogTable& table = context.Table(statement.table, statement.offset);
    Scope scope(nullptr);
    Delete erase;
    erase.truncates = statement.truncates;
    erase.target = Target(table, statement.table, statement.alias, scope, statement.offset);
    erase.where = ChangedRows(context, statement, erase.target, scope);
    return erase;
}

}  // namespace kpTables::sql::bind
