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
    translation.text = Printer(engine, numbers).Statement(statement);
    if (statement.query) translation.columns = statement.query->Columns();
    return translation;
}

std::string Printer::Statement(const bind::BoundStatement& statement) {
    if (statement.query) return Query(*statement.query);
    if (statement.insert) return Insert(*statement.insert);
    if (statement.update) return Update(*statement.update);
    if (statement.erase) return Delete(*statement.erase);
    return SchemaChange(*statement.schema);
}

std::string Printer::Insert(const bind::Insert& insert) {
    std::string text = "INSERT INTO " + SourceName(*insert.target);
    std::string separator = " (";
    for (const CatalogColumn* column : insert.columns) {
        text.append(separator).append(engine_.Name(column->name));
        separator = ", ";
    }
    text += ")";
    if (insert.query) return text + " " + Query(*insert.query);
    separator = " VALUES (";
    for (const bind::TermPtr& value : insert.values) {
        text.append(separator).append(Term(*value).text);
        separator = ", ";
    }
    return text + ")";
}

std::string Printer::Update(const bind::Update& update) {
    std::string text = "UPDATE " + SourceText(*update.target);
    std::string separator = " SET ";
    for (const auto& [column, value] : update.assignments) {
        text.append(separator).append(engine_.Name(column->name)).append(" = ").append(Term(*value).text);
        separator = ", ";
    }
    return text + Clause(" WHERE ", update.where);
}

std::string Printer::Delete(const bind::Delete& erase) {
    return "DELETE FROM " + SourceText(*erase.target) + Clause(" WHERE ", erase.where);
}

std::string Printer::SchemaChange(const bind::SchemaChange& change) {
    std::vector<std::string> defaults;
    for (const bind::Definition& column : change.columns) {
        const bind::Term* value = column.defaultValue.get();
        const bool constant = bind::If<bind::ConstantTerm>(value) != nullptr;
        const std::string text = value ? Term(*value).text : std::string();
        defaults.push_back(value && !constant ? "(" + text + ")" : text);
    }
    return engine_.SchemaChange(change, defaults);
}

}  // namespace kpTables::sql::print
