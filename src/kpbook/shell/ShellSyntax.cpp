#include "kpbook/shell/ShellSyntax.h"

namespace kpTables::kpbook::shell {

std::span<const DotCommand> DotCommands() {
    static const std::vector<DotCommand> commands = {
        {".begin", "", "begin a transaction", {}},
        {".call",
         "METHOD [ARGS]",
         "call a method; arguments as kpbook call takes them, in quotes where they have blanks",
         {}},
        {".commit", "", "keep what the transaction has changed", {}},
        {".dialect", "jet|sql", "the dialect in which methods send their statements", {"jet", "sql"}},
        {".help", "", "this list", {}},
        {".mode", "table|csv|json|markdown", "how results are shown", {"table", "csv", "json", "markdown"}},
        {".quit", "", "end the shell, as Ctrl-D does", {}},
        {".rollback", "", "undo what the transaction has changed", {}},
        {".schema", "[TABLE]", "the columns of a table, or of all", {}},
        {".tables", "", "the tables", {}},
    };
    return commands;
}

std::span<const std::string_view> ChoicesOf(std::string_view command) {
    for (const DotCommand& each : DotCommands()) {
        if (each.name == command) return each.choices;
    }
    return {};
}

}  // namespace kpTables::kpbook::shell
