// Close_DepotBalance beside the same closing as set-based statements.
#pragma once

#include <filesystem>

#include "BookMaker.h"

namespace kpTables::bench {

/// Prints time and peak memory of both; false when their balance tables differ.
bool BenchClosing(const std::filesystem::path& folder, const BookSize& size, int runs);

}  // namespace kpTables::bench
