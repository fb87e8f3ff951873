#include "sql/sqlite/DataStatements.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "sql/SqlError.h"
#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/ExpressionTranslator.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/SelectText.h"
#include "sql/sqlite/SelectTranslator.h"
#include "sql/sqlite/SqliteTranslator.h"

namespace kpTables::sql {

namespace {

constexpr const char* kNoAggregate = "cannot have an aggregate function in the statement";

// Whether a name is a second one for a column that the statement names as well, whose value counts then.
bool IsRepeated(const CatalogTable& table, const std::string& name, const std::vector<std::string>& names) {
    const CatalogColumn* column = FindColumn(table, name);
    return column && column->computed && std::any_of(names.begin(), names.end(), [&](const std::string& other) {
               return SameName(other, column->source);
           });
}

// A column for each value; null for a value that does not count.
std::vector<const CatalogColumn*> InsertColumns(const CatalogTable& table, const InsertStatement& statement) {
    std::vector<const CatalogColumn*> columns;
    for (std::size_t i = 0; i < statement.columns.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j)
            if (SameName(statement.columns[i], statement.columns[j]))
                throw SqlError(ErrorKind::Syntax, "the column '" + statement.columns[j] + "' is given twice",
                               statement.columnOffsets[i]);
        const CatalogColumn& column = RequireStoredColumn(table, statement.columns[i], statement.columnOffsets[i]);
        columns.push_back(IsRepeated(table, statement.columns[i], statement.columns) ? nullptr : &column);
    }
    if (statement.columns.empty())
        for (const auto& column : table.columns)
            if (!column.computed) columns.push_back(&column);
    return columns;
}

// The value as the column stores it; a text must not be longer than it takes.
Term ColumnValue(Session& session, Term value, const CatalogColumn& column) {
    value = StoredTerm(session, std::move(value), column.type);
    if (column.length == 0 || value.type == Type::Null) return value;
    return FunctionTerm("kp_fit",
                        {value, ConstantTerm(std::to_string(column.length), Type::Long),
                         ConstantTerm(QuoteText(column.name), Type::Text)},
                        Type::Text);
}

void CheckCount(std::size_t columns, std::size_t values, std::size_t offset) {
    if (columns != values)
        throw SqlError(ErrorKind::Syntax,
                       "there are " + std::to_string(values) + " values for " + std::to_string(columns) + " columns",
                       offset);
}

std::string ValuesText(Session& session, const InsertStatement& statement,
                       const std::vector<const CatalogColumn*>& columns) {
    CheckCount(columns.size(), statement.values.size(), statement.offset);
    const Scope none(nullptr);
    std::string text;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!columns[i]) continue;
        Term value = TranslateExpression(*statement.values[i], {session, none, kNoAggregate});
        value = ColumnValue(session, std::move(value), *columns[i]);
        text.append(text.empty() ? " VALUES (" : ", ").append(value.text);
    }
    return text + ")";
}

// The query whose columns are converted to the table's; one that is more than a SELECT stands in FROM for that.
std::string QueryRows(Session& session, const Query& query, const std::vector<const CatalogColumn*>& columns,
                      std::size_t offset) {
    const auto& first = query.members.front();
    const bool plain = query.members.size() == 1 && first.core && !first.core->top && !first.core->distinct;
    SelectParts parts;
    if (plain) {
        SelectTranslator translator(session, *first.core, nullptr);
        parts = PartsOf(translator);
    } else {
        parts = SelectFromQuery(session, TranslateQuery(session, query, nullptr, QueryUse::Table));
    }
    CheckCount(columns.size(), parts.items.size(), offset);
    std::vector<OutputItem> items;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!columns[i]) continue;
        items.push_back(std::move(parts.items[i]));
        items.back().term = ColumnValue(session, std::move(items.back().term), *columns[i]);
    }
    parts.items = std::move(items);
    return " " + PrintSelect(session, parts, false).text;
}

// The scope of the one table that a statement changes, and the table as the statement names it.
std::string Target(const CatalogTable& table, const std::string& written, const std::string& alias, Scope& scope,
                   std::size_t offset) {
    const std::string quoted = QuoteForSqlite(alias.empty() ? table.name : alias);
    Source source;
    source.name = alias.empty() ? written : alias;
    source.columns = ColumnsOf(table, quoted);
    scope.Add(std::move(source), offset);
    return alias.empty() ? quoted : QuoteForSqlite(table.name) + " AS " + quoted;
}

std::string WhereText(Session& session, const ExpressionPtr& where, const Scope& scope) {
    if (!where) return {};
    const Term condition = TranslateCondition(*where, {session, scope, kNoAggregate});
    return condition.truth == true ? std::string() : " WHERE " + condition.text;
}

}  // namespace

std::string TranslateInsert(Session& session, const InsertStatement& statement) {
    const CatalogTable& table = session.Table(statement.table, statement.offset);
    const auto columns = InsertColumns(table, statement);
    std::string text = "INSERT INTO " + QuoteForSqlite(table.name);
    std::string separator = " (";
    for (const auto* column : columns) {
        if (!column) continue;
        text.append(separator).append(QuoteForSqlite(column->name));
        separator = ", ";
    }
    text += ")";
    return text + (statement.query ? QueryRows(session, *statement.query, columns, statement.offset)
                                   : ValuesText(session, statement, columns));
}

std::string TranslateUpdate(Session& session, const UpdateStatement& statement) {
    const CatalogTable& table = session.Table(statement.table, statement.offset);
    Scope scope(nullptr);
    std::string text = "UPDATE " + Target(table, statement.table, statement.alias, scope, statement.offset);
    std::string separator = " SET ";
    std::vector<std::string> names;
    for (const auto& assignment : statement.assignments) names.push_back(assignment.column);
    for (const auto& assignment : statement.assignments) {
        if (IsRepeated(table, assignment.column, names)) continue;
        scope.Resolve(Column(assignment.table, assignment.column, assignment.offset));
        const CatalogColumn& column = RequireStoredColumn(table, assignment.column, assignment.offset);
        Term value = TranslateExpression(*assignment.value, {session, scope, kNoAggregate});
        value = ColumnValue(session, std::move(value), column);
        text.append(separator).append(QuoteForSqlite(column.name)).append(" = ").append(value.text);
        separator = ", ";
    }
    return text + WhereText(session, statement.where, scope);
}

std::string TranslateDelete(Session& session, const DeleteStatement& statement) {
    const CatalogTable& table = session.Table(statement.table, statement.offset);
    Scope scope(nullptr);
    const std::string target = Target(table, statement.table, statement.alias, scope, statement.offset);
    return "DELETE FROM " + target + WhereText(session, statement.where, scope);
}

}  // namespace kpTables::sql
