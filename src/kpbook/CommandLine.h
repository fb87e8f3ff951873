// Reads the command line and runs the command.
#pragma once

#include <string>
#include <vector>

namespace kpTables::kpbook {

/// words: the command line, the program's name first. Returns the program's exit code. What failed is told on standard
/// error.
int RunCommandLine(const std::vector<std::string>& words);

}  // namespace kpTables::kpbook
