// The machine that the figures were measured on.
#pragma once

#include <string>
#include <vector>

namespace kpTables::bench {

/// Processor, memory, compiler and SQLite's version.
std::vector<std::string> DescribeMachine();

/// The load average of the last minute.
double LoadOfLastMinute();

/// "2026-11-21".
std::string Today();

}  // namespace kpTables::bench
