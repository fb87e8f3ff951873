#include "kpTables/Script.h"

#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Position.h"
#include "sql/parse/Script.h"

namespace kpTables {

std::vector<ScriptStatement> SplitScript(std::string_view script) {
    std::vector<ScriptStatement> statements;
    for (auto& part : sql::parse::SplitScript(script)) {
        statements.push_back({std::move(part.text), part.begin.line, part.begin.column, part.ended, part.end});
    }
    return statements;
}

DatabaseError InScript(const ScriptStatement& statement, const DatabaseError& error) {
    std::string message = error.Description();
    bool isPlaced = false;
    if (error.Position()) {
        const sql::Position at = sql::Locate(statement.text, *error.Position());
        const std::string own = sql::PlaceText(at);
        const std::size_t found = message.find(own);
        if (found != message.npos) {
            const std::size_t column = at.line == 1 ? statement.column + at.column - 1 : at.column;
            message.replace(found, own.size(), sql::PlaceText({statement.line + at.line - 1, column}));
            isPlaced = true;
        }
    }
    if (!isPlaced) message = Message("line {1}: {2}", statement.line, message);
    return DatabaseError(error.Number(), message, error.Statement(), error.Position());
}

}  // namespace kpTables
