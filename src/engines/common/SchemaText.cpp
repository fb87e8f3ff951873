#include "engines/common/SchemaText.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

#include "BookSchema.h"
#include "sql/Catalog.h"
#include "sql/Names.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/parse/TextPrinter.h"

namespace kpTables::engines {

namespace {

/// The tables that the statements so far have made.
class MadeTables final : public sql::Catalog {
public:
    const sql::CatalogTable* Find(std::string_view name) const override {
        const auto found = std::ranges::find_if(
            tables_, [&](const sql::CatalogTable& table) { return sql::SameName(table.name, name); });
        return found == tables_.end() ? nullptr : &*found;
    }
    void Add(const sql::CreateTableStatement& made) {
        sql::CatalogTable table{made.table, {}};
        for (const sql::ColumnDefinition& column : made.columns) {
            table.columns.push_back({column.name, column.type.type, column.type.counter, column.type.length,
                                     !column.source.empty(), column.source, column.type.precision, column.type.scale});
        }
        tables_.push_back(std::move(table));
    }

private:
    std::vector<sql::CatalogTable> tables_;
};

/// A word for each type of a column.
struct TypeWord {
    sql::Type type;
    const char* jet;
    const char* sqlServer;
};
constexpr TypeWord kTypeWords[] = {
    {sql::Type::Short, "SHORT", "SMALLINT"},   {sql::Type::Long, "LONG", "INT"},
    {sql::Type::Double, "DOUBLE", "FLOAT"},    {sql::Type::Currency, "CURRENCY", "MONEY"},
    {sql::Type::Date, "DATETIME", "DATETIME"}, {sql::Type::Boolean, "YESNO", "BIT"},
};

enum class Dialect { Jet, SqlServer };

/// Writes the schema's statements, line by line, for one of the two dialects.
class ScriptWriter {
public:
    explicit ScriptWriter(Dialect dialect) : dialect_(dialect) {}

    void Write(const sql::Statement& statement) {
        if (statement.kind == sql::StatementKind::CreateTable)
            WriteTable(static_cast<const sql::CreateTableStatement&>(statement));
        else
            WriteIndex(static_cast<const sql::CreateIndexStatement&>(statement));
        script_ += ";\n";
    }
    std::string Take() { return std::move(script_); }

private:
    static std::string Bracketed(const std::string& name) { return "[" + name + "]"; }

    /// A column's name, which may be another on SQL Server.
    std::string Column(const std::string& table, const std::string& name) const {
        if (dialect_ == Dialect::Jet) return Bracketed(name);
        const auto* const other = std::ranges::find_if(schema::kSqlServerNames, [&](const auto& each) {
            return sql::SameName(each.table, table) && sql::SameName(each.name, name);
        });
        return Bracketed(other == std::end(schema::kSqlServerNames) ? name : std::string(other->sqlServerName));
    }

    std::string TypeText(const sql::TypeName& type) const {
        if (type.counter) return dialect_ == Dialect::Jet ? "COUNTER" : "INT IDENTITY(1,1)";
        if (type.type == sql::Type::Text) {
            if (type.memo) return dialect_ == Dialect::Jet ? "MEMO" : "NVARCHAR(MAX)";
            return (dialect_ == Dialect::Jet ? "TEXT(" : "NVARCHAR(") + std::to_string(type.length) + ")";
        }
        const auto* const word = std::ranges::find(kTypeWords, type.type, &TypeWord::type);
        return dialect_ == Dialect::Jet ? word->jet : word->sqlServer;
    }

    std::string Definition(const std::string& table, const sql::ColumnDefinition& column) const {
        const std::string name = Column(table, column.name);
        if (!column.source.empty() && dialect_ == Dialect::SqlServer)
            return name + " AS (" + Column(table, column.source) + ")";
        std::string text = name + " " + TypeText(column.type);
        if (column.notNull) text += " NOT NULL";
        if (column.defaultValue) text += " DEFAULT " + sql::parse::Print(*column.defaultValue);
        if (column.primaryKey) text += " PRIMARY KEY";
        return text;
    }

    void WriteTable(const sql::CreateTableStatement& table) {
        script_ += "CREATE TABLE " + Bracketed(table.table) + " (\n";
        for (const sql::ColumnDefinition& column : table.columns) {
            script_ += &column == &table.columns.front() ? "    " : ",\n    ";
            script_ += Definition(table.table, column);
        }
        if (!table.primaryKey.empty()) {
            script_ += ",\n    PRIMARY KEY";
            WriteColumns(table.table, table.primaryKey);
        }
        script_ += "\n)";
    }

    void WriteIndex(const sql::CreateIndexStatement& index) {
        script_ += index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
        script_ += Bracketed(index.index) + " ON " + Bracketed(index.table);
        std::vector<std::string> columns;
        for (const auto& key : index.keys) columns.push_back(key.column);
        WriteColumns(index.table, columns);
    }

    void WriteColumns(const std::string& table, const std::vector<std::string>& columns) {
        for (const std::string& column : columns)
            script_ += (&column == &columns.front() ? " (" : ", ") + Column(table, column);
        script_ += ")";
    }

    Dialect dialect_;
    std::string script_;
};

std::string ScriptIn(Dialect dialect) {
    ScriptWriter writer(dialect);
    for (const std::string_view text : schema::BookSchema()) writer.Write(*sql::parse::Parse(text));
    return writer.Take();
}

}  // namespace

std::string SchemaIn(const sql::print::Engine& engine) {
    MadeTables tables;
    std::string script;
    for (const std::string_view text : schema::BookSchema()) {
        const sql::StatementPtr statement = sql::parse::Parse(text);
        script += sql::Translate(*statement, tables, engine).text + ";\n";
        if (statement->kind == sql::StatementKind::CreateTable)
            tables.Add(static_cast<const sql::CreateTableStatement&>(*statement));
    }
    return script;
}

std::string JetSchema() { return ScriptIn(Dialect::Jet); }
std::string SqlServerSchema() { return ScriptIn(Dialect::SqlServer); }

}  // namespace kpTables::engines
