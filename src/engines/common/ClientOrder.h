// The order of a result that its engine leaves to the client.
#pragma once

#include <string_view>

#include "engines/common/Limits.h"
#include "kpTables/MemoryRecordset.h"
#include "recordset/RowStore.h"
#include "sql/Translation.h"

namespace kpTables::engines {

/// Sorts the rows that a statement has read, by its order, and drops the columns that only the order reads.
/// DatabaseError ResultTooLarge when there is no memory for it, Cancelled when the host ends it. shown: the text for
/// messages.
void PutInOrder(recordset::RowStore& rows, const sql::ClientOrder& order, const TextOrder& texts, const Limits& limits,
                std::string_view shown);

}  // namespace kpTables::engines
