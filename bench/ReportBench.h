// The bill lists and the reports beside the same questions in SQLite's own SQL.
#pragma once

#include <filesystem>

#include "BookMaker.h"

namespace kpTables::bench {

/// Prints the time of both for every report; false when their rows differ.
bool BenchReports(const std::filesystem::path& folder, const BookSize& size, int runs);

}  // namespace kpTables::bench
