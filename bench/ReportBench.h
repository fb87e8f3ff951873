// The bill lists and the reports beside the same questions in SQLite's own SQL.
#pragma once

#include <string>

#include "Setting.h"

namespace kpTables::bench {

/// Measures both for every report of the book at path; false when their rows differ.
bool BenchReports(const Setting& setting, const std::string& path);

}  // namespace kpTables::bench
