// The parts of a call, for whoever has a book open already.
#pragma once

#include <vector>

#include "kpTables/Variant.h"
#include "kpbook/GlobalOptions.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

/// The arguments as values. A UsageError for a quote that must be doubled; passwords are hidden in the log from now on.
std::vector<Variant> ReadCallArguments(const CallOptions& options, IncidentLog& log);

/// Makes the call and writes its result, and what it wrote back into arguments; the program's exit code.
int RunCall(Workspace& workspace, const ConsoleHost& host, const CallOptions& options, std::vector<Variant> arguments,
            const GlobalOptions& global);

}  // namespace kpTables::kpbook::commands
