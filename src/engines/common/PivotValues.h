// The values that become the columns of a cross-tab.
#pragma once

#include <vector>

#include "recordset/RowStore.h"
#include "sql/Tree.h"

namespace kpTables::engines {

/// The first column's cells as literals.
std::vector<sql::LiteralValue> PivotValues(const recordset::RowStore& rows);

}  // namespace kpTables::engines
