// Rows for a small book.
#pragma once

#include <string>
#include <vector>

#include "kpTables/Book.h"

namespace kpTables::faults {

/// The numbers of its rows.
inline constexpr int kSmallRows[] = {1, 2, 3, 5, 7};

/// The statements that put these rows into almost every table of an empty book; bills and balances belong to warehouse
/// 2 and March 2004.
std::vector<std::string> SmallRows(Book& book);

}  // namespace kpTables::faults
