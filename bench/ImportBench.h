// Compares kpbook import with the import of the sqlite3 shell.
#pragma once

#include "Setting.h"

namespace kpTables::bench {

/// Imports a CSV file into fresh books and into fresh copies of their tables; false when the rows differ.
bool BenchImport(const Setting& setting);

}  // namespace kpTables::bench
