// All reports of a month as pages in a folder.
#pragma once

#include "kpbook/GlobalOptions.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

/// Writes a page for each report of a month and an index into the folder of the output path, which is made if it is
/// missing, and the index's path to standard output. Returns the program's exit code.
int ReportAll(const ReportOptions& options, const GlobalOptions& global);

}  // namespace kpTables::kpbook::commands
