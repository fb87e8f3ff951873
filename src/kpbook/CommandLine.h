// What was typed, read and carried out.
#pragma once

namespace kpTables::kpbook {

/// Answers with the program's exit code. Errors of a command that was understood pass to the caller.
int RunCommandLine(int count, char** words);

}  // namespace kpTables::kpbook
