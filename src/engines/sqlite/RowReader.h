// The rows that a statement returns, as typed cells.
#pragma once

#include <memory>
#include <string_view>

#include "engines/common/Limits.h"
#include "engines/sqlite/Database.h"
#include "recordset/RowStore.h"

namespace kpTables::engines::sqlite {

/// Steps a bound statement through all its rows and resets it. A field whose type is Empty gets the type of its first
/// value that is not Null. A cell of another type than its column's, as in a damaged book, is kept as it is; only an
/// amount of money out of range is an error, and a result beyond the limits. shown: the text for error messages.
std::unique_ptr<recordset::RowStore> ReadRows(PreparedStatement& statement, recordset::FieldsPtr fields,
                                              std::string_view shown, const engines::Limits& limits = {});

}  // namespace kpTables::engines::sqlite
