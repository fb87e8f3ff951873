// The definition of the command upgrade.
#pragma once

#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

void AddUpgrade(CLI::App& app, UpgradeOptions& options);

}  // namespace kpTables::kpbook::commands
