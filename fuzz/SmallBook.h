// A small book in memory for the fuzzers: a few rows in the tables of bills and of what they name, with gaps.
#pragma once

#include "TestDatabase.h"

namespace kpTables::fuzz {

/// The same for all runs; nothing may change it.
const test::TestDatabase& SmallBook();

}  // namespace kpTables::fuzz
