#include "kpbook/shell/ShellSyntax.h"

#include "kpTables/text/Message.h"

namespace kpTables::kpbook::shell {

std::span<const DotCommand> DotCommands() {
    static const std::vector<DotCommand> commands = {
        {".begin", "", Translatable("begin a transaction"), {}},
        {".call",
         "METHOD [ARGS]",
         Translatable("call a method; arguments as kpbook call takes them, in quotes where they have blanks"),
         {}},
        {".commit", "", Translatable("keep what the transaction has changed"), {}},
        {".dialect", "jet|sql", Translatable("the dialect in which methods send their statements"), {"jet", "sql"}},
        {".help", "", Translatable("this list"), {}},
        {".mode",
         "table|csv|json|markdown",
         Translatable("how results are shown"),
         {"table", "csv", "json", "markdown"}},
        {".quit", "", Translatable("end the shell, as Ctrl-D does"), {}},
        {".rollback", "", Translatable("undo what the transaction has changed"), {}},
        {".schema", "[TABLE]", Translatable("the columns of a table, or of all"), {}},
        {".tables", "", Translatable("the tables"), {}},
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
