// CREATE, DROP and ALTER.
#include "sql/print/Printer.h"

namespace kpTables::sql::print {

namespace {

/// Index names are unique per table in Jet, but elsewhere per book.
std::string IndexName(std::string_view table, std::string_view index) {
    return std::string(table).append(".").append(index);
}

}  // namespace

std::vector<std::string> Printer::Defaults(const bind::SchemaChange& change) {
    std::vector<std::string> defaults;
    for (const bind::Definition& column : change.columns) {
        const bind::Term* value = column.defaultValue.get();
        const bool constant = bind::If<bind::ConstantTerm>(value) != nullptr;
        const std::string text = value ? Term(*value).text : std::string();
        defaults.push_back(value && !constant ? "(" + text + ")" : text);
    }
    return defaults;
}

std::string Printer::CreateTable(const CreateTableStatement& statement, const bind::SchemaChange& change) {
    const std::vector<std::string> defaults = Defaults(change);
    std::string text = "CREATE TABLE " + engine_.Name(statement.table);
    for (std::size_t i = 0; i < change.columns.size(); ++i)
        text += (i == 0 ? " (" : ", ") + engine_.ColumnText(statement.table, change.columns[i], defaults[i]);
    text += engine_.KeyText(change);
    for (const auto& keys : statement.uniqueKeys) text += ", UNIQUE " + engine_.NameList(keys);
    return text + ")" + engine_.BehindTable(statement.table, change);
}

std::string Printer::CreateIndex(const CreateIndexStatement& statement, const bind::SchemaChange& change) const {
    const std::string& table = change.table->name;
    std::string text = statement.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    text += engine_.Name(IndexName(table, statement.index)) + " ON " + engine_.Name(table);
    for (std::size_t i = 0; i < change.keys.size(); ++i) {
        text +=
            (i == 0 ? " (" : ", ") + engine_.OrderKey(engine_.Name(change.keys[i]->name), statement.keys[i].descending);
    }
    return text + ")";
}

std::string Printer::SchemaChange(const bind::SchemaChange& change) {
    if (change.changed) return {};
    const sql::Statement& statement = *change.statement;
    const auto table = [&] { return engine_.Name(change.table->name); };
    switch (statement.kind) {
        case StatementKind::CreateTable:
            return CreateTable(static_cast<const CreateTableStatement&>(statement), change);
        case StatementKind::CreateIndex:
            return CreateIndex(static_cast<const CreateIndexStatement&>(statement), change);
        case StatementKind::DropTable:
            if (change.table) return "DROP TABLE " + table();
            return "DROP TABLE IF EXISTS " + engine_.Name(static_cast<const DropTableStatement&>(statement).table);
        case StatementKind::DropIndex:
            return "DROP INDEX " +
                   engine_.Name(IndexName(change.table->name, static_cast<const DropIndexStatement&>(statement).index));
        case StatementKind::DropColumn:
            return "ALTER TABLE " + table() + " DROP COLUMN " + engine_.Name(change.keys.front()->name);
        default:
            return "ALTER TABLE " + table() + " ADD COLUMN " +
                   engine_.ColumnText(change.table->name, change.columns.front(), Defaults(change).front());
    }
}

}  // namespace kpTables::sql::print
