// Compares the balance tables of two books.
#pragma once

#include <filesystem>

namespace kpTables::bench {

/// Compares every figure of every row, in a separate process. Returns the number of rows, or prints the difference and
/// returns -1.
double CompareBalances(const std::filesystem::path& left, const std::filesystem::path& right);

}  // namespace kpTables::bench
