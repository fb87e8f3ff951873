// What the figures were measured on.
#pragma once

#include <string>
#include <vector>

namespace kpTables::bench {

/// Processor, memory, compiler and SQLite's version, a sentence each.
std::vector<std::string> DescribeMachine();

/// The average number of processes that wanted to run in the last minute.
double LoadOfLastMinute();

/// "2026-11-21".
std::string Today();

}  // namespace kpTables::bench
