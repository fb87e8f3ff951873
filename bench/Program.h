// Runs another program.
#pragma once

#include <string>
#include <vector>

namespace kpTables::bench {

struct Ended {
    double seconds;  ///< from its start to its end
    double peakMebibytes;
    std::string output;  ///< its output, with its errors
};

/// Runs a program with arguments. Throws std::runtime_error with what it printed when it fails.
Ended RunProgram(const std::vector<std::string>& words);

}  // namespace kpTables::bench
