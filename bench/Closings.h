// Runs that close months, by the component or by hand.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Setting.h"

namespace kpTables::bench {

/// Months of warehouses, in the order in which they are closed.
struct Months {
    int first;
    int last;
    int depots;
};

/// What the runs of both took.
struct ClosingRuns {
    std::vector<double> component;       ///< seconds
    std::vector<double> hand;            ///< seconds
    std::vector<double> componentPeaks;  ///< MiB
    std::vector<double> handPeaks;       ///< MiB
    double rows = 0;                     ///< of balances that agree; -1 when they do not
};

/// Closes copies of a book in turns.
ClosingRuns RunClosings(const Setting& setting, const std::filesystem::path& book, const Months& months);

/// Prints the runs and whether the balances agree; answers the latter.
bool PrintClosings(const Setting& setting, const ClosingRuns& runs);

}  // namespace kpTables::bench
