// What uses a master row.
#pragma once

#include <cstdint>
#include <string>

#include "bookkeeping/MasterRows.h"

namespace kpTables::bookkeeping {

/// "3 rows of 入库记录, 1 row of 仓库余额表"; "" when nothing does.
std::string UsesOf(Connection& book, MasterKind kind, const MasterRow& row);

}  // namespace kpTables::bookkeeping
