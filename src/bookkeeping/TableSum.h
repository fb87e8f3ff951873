// The checksum of a table's rows.
#pragma once

#include <cstdint>

#include "kpTables/Recordset.h"

namespace kpTables::bookkeeping {

/// Of the recordset's current row. The sum of its rows' is a table's checksum, whatever their order.
std::uint64_t RowChecksum(const Recordset& rows);

}  // namespace kpTables::bookkeeping
