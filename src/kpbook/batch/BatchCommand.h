// Reads calls as lines of JSON and answers each with a line.
#pragma once

#include <string>

#include "kpbook/GlobalOptions.h"

namespace kpTables::kpbook::batch {

struct BatchOptions {
    std::string book;
    std::string path;    ///< "-" is standard input
    bool clean = false;  ///< a line is refused that pastes a quote which is not doubled
};

/// Returns the program's exit code. A line that fails is answered with its error and does not end the batch.
int RunBatch(const BatchOptions& options, const GlobalOptions& global);

}  // namespace kpTables::kpbook::batch
