// Compares calls with a single answer with statements prepared once through SQLite's C API, and with wrappers of it.
#pragma once

#include "Setting.h"

namespace kpTables::bench {

/// Measures calls with changing and with constant arguments; false when answers or texts differ.
bool BenchCalls(const Setting& setting);

}  // namespace kpTables::bench
