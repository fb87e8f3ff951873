// The order of a store's rows by their columns.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "kpTables/MemoryRecordset.h"
#include "recordset/RowStore.h"

namespace kpTables::recordset {

struct SortKey {
    int column = 0;
    bool descending = false;
};

/// The rows' numbers in ascending order: Null first, then numbers, then texts where a column holds them mixed. Rows
/// that are equal keep their order. The first key decides, and the next one between rows that are equal by it. pause:
/// called every few ten thousand steps; what it throws ends the work.
std::vector<std::uint32_t> OrderRows(const RowStore& rows, const std::vector<SortKey>& keys, const TextOrder& texts,
                                     std::function<void()> pause = {});

}  // namespace kpTables::recordset
