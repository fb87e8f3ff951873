// The commands close, reopen, check and backup on the command line.
#pragma once

#include <string>

#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

/// The words as typed.
struct CloseWords {
    std::string date;
    CloseOptions options;
};

void AddClose(CLI::App& app, CloseWords& words);
void AddReopen(CLI::App& app, ReopenOptions& options);
void AddCheck(CLI::App& app, CheckOptions& options);
void AddBackup(CLI::App& app, BackupOptions& options);

}  // namespace kpTables::kpbook::commands
