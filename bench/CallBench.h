// Calls that give one answer beside statements prepared once over SQLite's C API, and beside wrappers around it.
#pragma once

#include "Setting.h"

namespace kpTables::bench {

/// Measures a call, with other arguments each time and with the same ones; false when answers or texts differ.
bool BenchCalls(const Setting& setting);

}  // namespace kpTables::bench
