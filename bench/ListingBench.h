// Compares rs入库记录 with a loop over SQLite's C API that copies every column.
#pragma once

#include <string>

#include "Setting.h"

namespace kpTables::bench {

/// Measures time and bytes per cell of both on the book at path, for one warehouse and for all; false when the cells
/// differ.
bool BenchListing(const Setting& setting, const std::string& path);

}  // namespace kpTables::bench
