// Compares the bill lists and the reports with the same queries in SQLite's own SQL.
#pragma once

#include <string>

#include "Setting.h"

namespace kpTables::bench {

/// Measures both sides of every report on the book at path; false when their rows differ.
bool BenchReports(const Setting& setting, const std::string& path);

}  // namespace kpTables::bench
