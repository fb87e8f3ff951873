// The order of a store's rows by their columns.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "kpTables/MemoryRecordset.h"
#include "recordset/RowStore.h"

namespace kpTables::recordset {

struct SortKey {
    int column = 0;
    bool descending = false;
};

/// The rows' numbers in ascending order: Null first, then numbers, then texts where a column holds them mixed. Rows
/// that are equal keep their order. The first key decides, and the next one between rows that are equal by it.
std::vector<std::uint32_t> OrderRows(const RowStore& rows, const std::vector<SortKey>& keys, const TextOrder& texts);

}  // namespace kpTables::recordset
