// Reads the command line and runs the command.
#pragma once

namespace kpTables::kpbook {

/// Returns the program's exit code. Errors of the command itself pass to the caller.
int RunCommandLine(int count, char** words);

}  // namespace kpTables::kpbook
