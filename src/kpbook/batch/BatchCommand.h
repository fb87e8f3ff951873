// Calls read as lines of JSON, each answered with a line.
#pragma once

#include <string>

#include "kpbook/GlobalOptions.h"

namespace kpTables::kpbook::batch {

struct BatchOptions {
    std::string book;
    std::string path;  ///< "-" is standard input
};

/// Answers with the program's exit code. A line that fails is answered with its error and does not end the batch.
int RunBatch(const BatchOptions& options, const GlobalOptions& global);

}  // namespace kpTables::kpbook::batch
