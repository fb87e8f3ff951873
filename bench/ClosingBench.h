// Compares Close_DepotBalance with closing by set-based statements: one big month, and whole years of a firm.
#pragma once

#include "Setting.h"

namespace kpTables::bench {

/// Closes one month of one warehouse; false when the balance tables differ.
bool BenchClosing(const Setting& setting);

/// Closes twelve months of ten warehouses in three books, each ten times as large as the previous one; false when the
/// balance tables differ.
bool BenchYear(const Setting& setting);

}  // namespace kpTables::bench
