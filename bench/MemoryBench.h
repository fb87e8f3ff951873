// Memory of a process that keeps sending queries.
#pragma once

#include "Setting.h"

namespace kpTables::bench {

/// Calls with new literals every time and measures peak memory after the first ten thousand calls and after all. False
/// when answers are missing.
bool BenchMemory(const Setting& setting);

}  // namespace kpTables::bench
