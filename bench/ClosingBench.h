// Close_DepotBalance beside the closing as set-based statements: one big month, and the whole years of a firm.
#pragma once

#include "Setting.h"

namespace kpTables::bench {

/// Closes one month of one warehouse; false when the balance tables differ.
bool BenchClosing(const Setting& setting);

/// Closes twelve months of ten warehouses of three books, each ten times as large as the one before; false when the
/// balance tables differ.
bool BenchYear(const Setting& setting);

}  // namespace kpTables::bench
