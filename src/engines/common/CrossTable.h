// A TRANSFORM's rows, put together from its cells.
#pragma once

#include <memory>
#include <string_view>

#include "recordset/RowStore.h"
#include "sql/Translation.h"

namespace kpTables::engines {

/// A row for each group, with a column for each pivot value in ascending order, "<>" for Null first; null when there
/// are more columns than an engine's own statement could have. DatabaseError Overflow when a sum overflows. shown: the
/// text for messages.
std::unique_ptr<recordset::RowStore> CrossTableOf(const recordset::RowStore& cells, const sql::CellLayout& layout,
                                                  std::string_view shown);

}  // namespace kpTables::engines
