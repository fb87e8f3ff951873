// kpbook run in a process of its own, with faults.
#pragma once

#include <string>
#include <vector>

#include "faults/Plan.h"

namespace kpTables::faults {

struct Outcome {
    enum class End { Exited, Ended, Crashed, Hung };
    End end = End::Exited;
    int code = 0;  ///< the exit code, or the signal of a crash
    std::string out;
    std::string err;
    Report report;

    bool Succeeded() const { return end == End::Exited && code == 0; }
};

/// Runs kpbook with these words and standard input, in the current folder.
Outcome RunKpbook(const std::vector<std::string>& words, const std::string& input, const Plan& plan = {});

}  // namespace kpTables::faults
