// Memory of a process that goes on asking.
#pragma once

#include "Setting.h"

namespace kpTables::bench {

/// Calls with other literals every time; measures peak memory after the first ten thousand and after all of them. False
/// when answers are missing.
bool BenchMemory(const Setting& setting);

}  // namespace kpTables::bench
