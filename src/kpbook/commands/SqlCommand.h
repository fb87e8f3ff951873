// The definition of the command sql.
#pragma once

#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

void AddSql(CLI::App& app, SqlOptions& options);

/// Raises CLI's error unless exactly one of TEXT and --file was given.
void CheckSql(const CLI::App& command);

}  // namespace kpTables::kpbook::commands
