// The values that become the columns of a cross-tab.
#pragma once

#include <vector>

#include "kpTables/db/RowStore.h"
#include "sql/Tree.h"

namespace kpTables::sqlite {

/// The first column's cells as literals.
std::vector<sql::LiteralValue> PivotValues(const db::RowStore& rows);

}  // namespace kpTables::sqlite
