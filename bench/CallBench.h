// Calls that give one answer beside statements prepared once over SQLite's C API.
#pragma once

#include <filesystem>

#include "BookMaker.h"

namespace kpTables::bench {

/// Prints the time of a call, with other arguments each time and with the same ones; false when answers differ.
bool BenchCalls(const std::filesystem::path& folder, const BookSize& size, int runs);

}  // namespace kpTables::bench
