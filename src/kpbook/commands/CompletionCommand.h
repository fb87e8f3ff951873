// The commands completion and man: texts made from the definitions of all commands.
#pragma once

#include "kpbook/GlobalOptions.h"
#include "kpbook/commands/CommandSyntax.h"

namespace kpTables::kpbook::commands {

struct CompletionOptions {
    std::string shell;
};

struct ManOptions {
    std::string command;  ///< empty: the program's own page
    std::string folder;   ///< empty: one page on standard output
};

void AddCompletion(CLI::App& app, CompletionOptions& options);
void AddMan(CLI::App& app, ManOptions& options);

/// tree: the program with all of its commands.
int Completion(const CLI::App& tree, const CompletionOptions& options, const GlobalOptions& global);
int Man(const CLI::App& tree, const ManOptions& options, const GlobalOptions& global);

}  // namespace kpTables::kpbook::commands
