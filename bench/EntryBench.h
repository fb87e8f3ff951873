// Compares entering bills through editable recordsets with prepared inserts, and measures the cost of the indexes.
#pragma once

#include "Setting.h"

namespace kpTables::bench {

/// Enters bills into copies of a book that has grown bill by bill; false when the rows differ. eachIndex also measures
/// the cost of each index of the bills' tables.
bool BenchEntry(const Setting& setting, bool eachIndex);

}  // namespace kpTables::bench
