#include "sql/parse/TextPrinter.h"

#include "sql/parse/TextWriter.h"

namespace kpTables::sql::parse {

namespace {

void WriteWhere(std::string& out, const ExpressionPtr& where) {
    if (!where) return;
    out += " WHERE ";
    WriteExpression(out, *where);
}

void WriteFrom(std::string& out, const std::vector<TablePtr>& from) {
    if (from.empty()) return;
    out += " FROM ";
    WriteTables(out, from);
}

void WriteWith(std::string& out, const std::vector<CommonTable>& with) {
    for (const CommonTable& table : with) {
        out += &table == &with.front() ? "WITH " : ", ";
        WriteName(out, table.name);
        if (!table.columns.empty()) {
            out += " (";
            WriteNames(out, table.columns);
            out += ')';
        }
        out += " AS ";
        WriteQueryInParentheses(out, *table.query);
    }
    if (!with.empty()) out += ' ';
}

void WriteTransform(std::string& out, const TransformStatement& s) {
    out += "TRANSFORM ";
    WriteExpression(out, *s.aggregate.expression);
    WriteAlias(out, s.aggregate.alias);
    out += ' ';
    WriteQuery(out, *s.query);
    out += " PIVOT ";
    WriteExpression(out, *s.pivot, Tighter(Precedence::Comparison));
    if (s.values.empty()) return;
    out += " IN (";
    WriteExpressions(out, s.values);
    out += ')';
}

void WriteInsert(std::string& out, const InsertStatement& s) {
    out += "INSERT INTO ";
    WriteName(out, s.table);
    if (!s.columns.empty()) {
        out += " (";
        WriteNames(out, s.columns);
        out += ')';
    }
    out += ' ';
    if (s.query) return WriteQuery(out, *s.query);
    if (s.rows.empty()) out += "DEFAULT VALUES";
    for (const std::vector<ExpressionPtr>& row : s.rows) {
        out += &row == &s.rows.front() ? "VALUES (" : ", (";
        WriteExpressions(out, row);
        out += ')';
    }
}

void WriteTop(std::string& out, const ExpressionPtr& top) {
    if (!top) return;
    out += "TOP (";
    WriteExpression(out, *top);
    out += ") ";
}

void WriteUpdate(std::string& out, const UpdateStatement& s) {
    out += "UPDATE ";
    WriteTop(out, s.top);
    if (s.table.empty()) {
        WriteTables(out, s.from);
    } else {
        WriteName(out, s.table);
        WriteAlias(out, s.alias);
    }
    for (std::size_t i = 0; i < s.assignments.size(); ++i) {
        const UpdateStatement::Assignment& assignment = s.assignments[i];
        out += i == 0 ? " SET " : ", ";
        if (!assignment.table.empty()) {
            WriteName(out, assignment.table);
            out += '.';
        }
        WriteName(out, assignment.column);
        out += " = ";
        WriteExpression(out, *assignment.value);
    }
    if (!s.table.empty()) WriteFrom(out, s.from);
    WriteWhere(out, s.where);
}

void WriteDelete(std::string& out, const DeleteStatement& s) {
    out += s.truncates ? "TRUNCATE TABLE " : "DELETE ";
    WriteTop(out, s.top);
    if (!s.truncates) out += "FROM ";
    WriteName(out, s.table);
    WriteAlias(out, s.alias);
    WriteFrom(out, s.from);
    WriteWhere(out, s.where);
}

void WriteColumnDefinition(std::string& out, const ColumnDefinition& column) {
    WriteName(out, column.name);
    // A computed column of an unknown column has no type.
    if (column.type.type != Type::Unknown) {
        out += ' ';
        WriteType(out, column.type);
    }
    if (!column.source.empty()) {
        out += " AS (";
        WriteName(out, column.source);
        out += ')';
    }
    if (column.notNull) out += " NOT NULL";
    if (column.defaultValue) {
        out += " DEFAULT ";
        WriteExpression(out, *column.defaultValue, Precedence::Sign);
    }
    if (column.primaryKey) out += " PRIMARY KEY";
    if (column.unique) out += " UNIQUE";
}

void WriteCreateTable(std::string& out, const CreateTableStatement& s) {
    out += "CREATE TABLE ";
    WriteName(out, s.table);
    for (std::size_t i = 0; i < s.columns.size(); ++i) {
        out += i == 0 ? " (" : ", ";
        WriteColumnDefinition(out, s.columns[i]);
    }
    if (!s.primaryKey.empty()) {
        out += ", PRIMARY KEY (";
        WriteNames(out, s.primaryKey);
        out += ')';
    }
    for (const std::vector<std::string>& key : s.uniqueKeys) {
        out += ", UNIQUE (";
        WriteNames(out, key);
        out += ')';
    }
    out += ')';
}

void WriteCreateIndex(std::string& out, const CreateIndexStatement& s) {
    out += s.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    WriteName(out, s.index);
    out += " ON ";
    WriteName(out, s.table);
    for (std::size_t i = 0; i < s.keys.size(); ++i) {
        out += i == 0 ? " (" : ", ";
        WriteName(out, s.keys[i].column);
        if (s.keys[i].descending) out += " DESC";
    }
    out += ')';
}

void WriteDropIndex(std::string& out, const DropIndexStatement& s) {
    out += "DROP INDEX ";
    WriteName(out, s.index);
    out += " ON ";
    WriteName(out, s.table);
}

void WriteAddColumn(std::string& out, const AddColumnStatement& s) {
    out += "ALTER TABLE ";
    WriteName(out, s.table);
    for (const ColumnDefinition& column : s.columns) {
        out += &column == &s.columns.front() ? " ADD COLUMN " : ", ";
        WriteColumnDefinition(out, column);
    }
}

void WriteAlterColumn(std::string& out, const AlterColumnStatement& s) {
    out += "ALTER TABLE ";
    WriteName(out, s.table);
    out += " ALTER COLUMN ";
    WriteColumnDefinition(out, s.column);
}

void WriteDropColumn(std::string& out, const DropColumnStatement& s) {
    out += "ALTER TABLE ";
    WriteName(out, s.table);
    out += " DROP COLUMN ";
    WriteNames(out, s.columns);
}

void WriteSession(std::string& out, const SessionStatement& s) {
    switch (s.action) {
        case SessionStatement::Action::Begin:
            out += "BEGIN TRANSACTION";
            return;
        case SessionStatement::Action::Commit:
            out += "COMMIT";
            return;
        case SessionStatement::Action::Rollback:
            out += "ROLLBACK";
            return;
        case SessionStatement::Action::Nothing:
            out += "SET " + s.words;
    }
}

void WriteStatement(std::string& out, const Statement& s) {
    WriteWith(out, s.with);
    switch (s.kind) {
        case StatementKind::Select:
            return WriteQuery(out, *static_cast<const SelectStatement&>(s).query);
        case StatementKind::SelectInto: {
            const auto& into = static_cast<const SelectIntoStatement&>(s);
            return WriteQuery(out, *into.query, &into);
        }
        case StatementKind::Transform:
            return WriteTransform(out, static_cast<const TransformStatement&>(s));
        case StatementKind::Insert:
            return WriteInsert(out, static_cast<const InsertStatement&>(s));
        case StatementKind::Update:
            return WriteUpdate(out, static_cast<const UpdateStatement&>(s));
        case StatementKind::Delete:
            return WriteDelete(out, static_cast<const DeleteStatement&>(s));
        case StatementKind::CreateTable:
            return WriteCreateTable(out, static_cast<const CreateTableStatement&>(s));
        case StatementKind::CreateIndex:
            return WriteCreateIndex(out, static_cast<const CreateIndexStatement&>(s));
        case StatementKind::DropTable:
            out += static_cast<const DropTableStatement&>(s).ifExists ? "DROP TABLE IF EXISTS " : "DROP TABLE ";
            return WriteName(out, static_cast<const DropTableStatement&>(s).table);
        case StatementKind::DropIndex:
            return WriteDropIndex(out, static_cast<const DropIndexStatement&>(s));
        case StatementKind::AddColumn:
            return WriteAddColumn(out, static_cast<const AddColumnStatement&>(s));
        case StatementKind::AlterColumn:
            return WriteAlterColumn(out, static_cast<const AlterColumnStatement&>(s));
        case StatementKind::DropColumn:
            return WriteDropColumn(out, static_cast<const DropColumnStatement&>(s));
        case StatementKind::Session:
            return WriteSession(out, static_cast<const SessionStatement&>(s));
    }
}

}  // namespace

std::string Print(const Statement& statement) {
    std::string out;
    WriteStatement(out, statement);
    return out;
}

std::string Print(const Query& query) {
    std::string out;
    WriteQuery(out, query);
    return out;
}

std::string Print(const Expression& expression) {
    std::string out;
    WriteExpression(out, expression);
    return out;
}

}  // namespace kpTables::sql::parse
