// The balance tables of two books beside each other.
#pragma once

#include <filesystem>

namespace kpTables::bench {

/// Compares every figure of every row, in a process of its own. Answers the number of rows, or -1 after having said
/// what differs.
double CompareBalances(const std::filesystem::path& left, const std::filesystem::path& right);

}  // namespace kpTables::bench
