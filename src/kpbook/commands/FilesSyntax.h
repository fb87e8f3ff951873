// The commands import and export on the command line.
#pragma once

#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

void AddImport(CLI::App& app, ImportOptions& options);
void AddExport(CLI::App& app, ExportOptions& options);

/// Checks what depends on more than one word; a CLI::ParseError says what is wrong.
void CheckImport(const ImportOptions& options);
/// The separator that a word names; nothing for an empty word.
std::optional<char> SeparatorOf(const std::string& word);
/// The columns of a word like "a,b".
std::vector<std::string> ColumnsOf(const std::string& word);

}  // namespace kpTables::kpbook::commands
