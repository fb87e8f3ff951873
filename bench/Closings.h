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

/// The measurements of both sides' runs.
struct ClosingRuns {
    std::vector<double> component;       ///< seconds
    std::vector<double> hand;            ///< seconds
    std::vector<double> componentPeaks;  ///< MiB
    std::vector<double> handPeaks;       ///< MiB
    double rows = 0;                     ///< number of balance rows when they agree; otherwise -1
};

/// Closes copies of a book, both sides in turn.
ClosingRuns RunClosings(const Setting& setting, const std::filesystem::path& book, const Months& months);

/// Prints the runs; returns whether the balances agree.
bool PrintClosings(const Setting& setting, const ClosingRuns& runs);

}  // namespace kpTables::bench
