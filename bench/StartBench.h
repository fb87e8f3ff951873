// The first answer of a fresh process.
#pragma once

#include "Setting.h"

namespace kpTables::bench {

/// Starts kpbook and the sqlite3 shell in turn for one answer from a small book; false when the answers differ.
bool BenchStart(const Setting& setting);

}  // namespace kpTables::bench
