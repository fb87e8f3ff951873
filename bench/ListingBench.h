// rs入库记录 beside a loop that copies every column.
#pragma once

#include <filesystem>

#include "BookMaker.h"

namespace kpTables::bench {

/// Prints time and memory of the lines of one warehouse and of the whole book; false when the row counts differ.
bool BenchListing(const std::filesystem::path& folder, const BookSize& size, int runs);

}  // namespace kpTables::bench
