// Reads the command line and runs the command.
#pragma once

namespace kpTables::kpbook {

/// Returns the program's exit code. What failed is told on standard error.
int RunCommandLine(int count, char** words);

}  // namespace kpTables::kpbook
