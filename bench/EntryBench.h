// Bills entered through editable recordsets beside prepared inserts, and what the indexes of a book add to it.
#pragma once

#include "Setting.h"

namespace kpTables::bench {

/// Enters bills into copies of a book that has grown bill by bill; false when the rows differ. eachIndex: tells what
/// each index of the bills' tables costs too.
bool BenchEntry(const Setting& setting, bool eachIndex);

}  // namespace kpTables::bench
