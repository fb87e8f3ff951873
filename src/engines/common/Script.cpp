#include "kpTables/Script.h"

#include <utility>

#include "sql/Position.h"
#include "sql/parse/Script.h"

namespace kpTables {

namespace {

std::string PlaceText(std::size_t line, std::size_t column) {
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

}  // namespace

std::vector<ScriptStatement> SplitScript(std::string_view script) {
    std::vector<ScriptStatement> statements;
    for (auto& part : sql::parse::SplitScript(script)) {
        statements.push_back({std::move(part.text), part.begin.line, part.begin.column, part.ended, part.end});
    }
    return statements;
}

DatabaseError InScript(const ScriptStatement& statement, const DatabaseError& error) {
    std::string message = error.Description();
    std::string before = "line " + std::to_string(statement.line) + ": ";
    if (error.Position()) {
        const sql::Position at = sql::Locate(statement.text, *error.Position());
        const std::string own = PlaceText(at.line, at.column);
        const std::size_t found = message.find(own);
        if (found != message.npos) {
            const std::size_t column = at.line == 1 ? statement.column + at.column - 1 : at.column;
            message.replace(found, own.size(), PlaceText(statement.line + at.line - 1, column));
            before.clear();
        }
    }
    return DatabaseError(error.Number(), before + message, error.Statement(), error.Position());
}

}  // namespace kpTables
