// The commands that make books, new, opening and copy, on the command line.
#pragma once

#include <string>

#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

struct NewWords {
    NewOptions options;
    std::string dialect = "jet";
};

void AddNew(CLI::App& app, NewWords& words);
void AddOpening(CLI::App& app, OpeningOptions& options);
void AddCopy(CLI::App& app, CopyOptions& options);

/// Completes the options of new from their words.
void ReadNew(NewWords& words);

}  // namespace kpTables::kpbook::commands
