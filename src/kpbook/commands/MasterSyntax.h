// The words of add, edit, remove and list.
#pragma once

#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

void AddMasterAdd(CLI::App& app, MasterOptions& options);
void AddMasterEdit(CLI::App& app, MasterOptions& options);
void AddMasterRemove(CLI::App& app, MasterOptions& options);
void AddMasterList(CLI::App& app, MasterOptions& options);

}  // namespace kpTables::kpbook::commands
