// The words of operators.
#pragma once

#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

void AddOperators(CLI::App& app, OperatorsOptions& options);

}  // namespace kpTables::kpbook::commands
