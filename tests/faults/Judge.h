// Whether a run kept its promise.
#pragma once

#include <string>
#include <vector>

#include "faults/BookState.h"
#include "faults/Command.h"
#include "faults/Workload.h"

namespace kpTables::faults {

/// A workload with what it does when nothing fails.
struct Reference {
    Workload workload;
    Outcome outcome;
    std::vector<BookState> before;
    std::vector<BookState> after;
    Folder folderAfter;
    /// For a batch: the rows that each line adds.
    std::vector<std::vector<std::string>> added;
};

/// Runs the workload without faults. A std::runtime_error when it fails, or when two runs differ.
Reference MakeReference(const Workload& workload);
/// Runs it with a fault.
Outcome RunWith(const Reference& reference, const Plan& plan);
/// What is wrong with the outcome and with the books that it left in the current folder; "" when nothing is.
std::string Complaint(const Reference& reference, const Outcome& outcome);

}  // namespace kpTables::faults
