#include <algorithm>
#include <map>
#include <utility>

#include "sql/bind/Walk.h"
#include "sql/print/Printer.h"

namespace kpTables::sql::print {

namespace {

std::map<int, const bind::ParameterTerm*> ParametersOf(const bind::BoundStatement& statement) {
    std::map<int, const bind::ParameterTerm*> parameters;
    bind::ForEachTerm(statement, [&](const bind::Term& term) {
        if (const auto* parameter = bind::If<bind::ParameterTerm>(&term)) parameters[parameter->sequence] = parameter;
    });
    return parameters;
}

/// Engines add and drop one column at a time.
std::size_t PartsOf(const bind::SchemaChange& change) {
    if (change.statement->kind == StatementKind::AddColumn) return change.columns.size();
    return change.statement->kind == StatementKind::DropColumn ? change.keys.size() : 1;
}

bind::SchemaChange PartOf(const bind::SchemaChange& change, std::size_t part) {
    bind::SchemaChange one = change;
    if (PartsOf(change) == 1) return one;
    if (change.statement->kind == StatementKind::AddColumn)
        one.columns = {change.columns[part]};
    else
        one.keys = {change.keys[part]};
    return one;
}

}  // namespace

Translation Print(const bind::BoundStatement& statement, const Engine& engine) {
    Translation translation;
    translation.kind = statement.kind;
    translation.fixedLiterals = statement.fixedLiterals;
    std::map<int, int> numbers;
    for (const auto& [sequence, parameter] : ParametersOf(statement)) {
        translation.parameters.push_back(
            {parameter->ordinal, parameter->binding, parameter->literalOffset, parameter->negative, parameter->pair});
        numbers[sequence] = static_cast<int>(translation.parameters.size());
    }
    Printer printer(engine, numbers);
    translation.text = printer.Statement(statement);
    translation.further = printer.Further(statement);
    translation.columnChange = printer.ColumnChange(statement);
    if (statement.query) {
        translation.columns = statement.query->Columns();
        translation.order = statement.query->clientOrder;
    }
    return translation;
}

std::string Printer::Statement(const bind::BoundStatement& statement) {
    std::string text;
    for (const bind::CommonQuery& common : statement.with)
        text.append(text.empty() ? "WITH " : ", ")
            .append(engine_.Name(common.name))
            .append(" AS ")
            .append(common.list ? "(" + engine_.BookList(*common.list) + ")" : QueryInParentheses(*common.query));
    if (!text.empty()) text += ' ';
    if (statement.query) return text + Query(*statement.query);
    if (statement.insert) return text + Insert(*statement.insert);
    if (statement.update) return text + Update(*statement.update);
    if (statement.erase) return text + Delete(*statement.erase);
    return SchemaChange(PartOf(*statement.schema, 0));
}

std::vector<std::string> Printer::Further(const bind::BoundStatement& statement) {
    std::vector<std::string> texts;
    if (statement.erase && statement.erase->truncates) {
        const CatalogTable& table = *statement.erase->target->table;
        const bool counts = std::any_of(table.columns.begin(), table.columns.end(),
                                        [](const CatalogColumn& column) { return column.counter; });
        if (counts) texts.push_back(engine_.CounterRestart(table));
    }
    if (!statement.schema) return texts;
    for (std::size_t part = 1; part < PartsOf(*statement.schema); ++part)
        texts.push_back(SchemaChange(PartOf(*statement.schema, part)));
    return texts;
}

std::optional<sql::ColumnChange> Printer::ColumnChange(const bind::BoundStatement& statement) {
    if (!statement.schema || !statement.schema->changed) return std::nullopt;
    const bind::SchemaChange& change = *statement.schema;
    return sql::ColumnChange{change.table->name, change.keys.front()->name,
                             engine_.ColumnDefinition(change.columns.front(), Defaults(change).front()),
                             Term(*change.changed).text};
}

std::string Printer::Insert(const bind::Insert& insert) {
    std::string text = "INSERT INTO " + SourceName(*insert.target);
    if (!insert.query && insert.rows.empty()) return text + " DEFAULT VALUES";
    std::string separator = " (";
    for (const CatalogColumn* column : insert.columns) {
        text.append(separator).append(engine_.Name(column->name));
        separator = ", ";
    }
    text += ")";
    if (insert.query) return text + " " + Query(*insert.query);
    text += " VALUES ";
    for (const bind::Terms& row : insert.rows) {
        separator = &row == &insert.rows.front() ? "(" : ", (";
        for (const bind::TermPtr& value : row) {
            text.append(separator).append(Term(*value).text);
            separator = ", ";
        }
        text += ")";
    }
    return text;
}

std::string Printer::Update(const bind::Update& update) {
    std::string text = "UPDATE " + SourceText(*update.target);
    std::string separator = " SET ";
    for (const auto& [column, value] : update.assignments) {
        text.append(separator).append(engine_.Name(column->name)).append(" = ").append(Term(*value).text);
        separator = ", ";
    }
    if (update.from) text += " FROM " + SourceText(*update.from);
    return text + Clause(" WHERE ", update.where);
}

std::string Printer::Delete(const bind::Delete& erase) {
    return "DELETE FROM " + SourceText(*erase.target) + Clause(" WHERE ", erase.where);
}

}  // namespace kpTables::sql::print
