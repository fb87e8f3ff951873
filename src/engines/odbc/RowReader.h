// The rows of a query as typed cells.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "engines/common/Limits.h"
#include "engines/odbc/Query.h"
#include "recordset/RowStore.h"

namespace kpTables::engines::odbc {

/// The field type of a server's column: DECIMAL with one to four digits behind the point is Currency.
VarType FieldTypeOf(const ColumnDescription& column) noexcept;

/// The columns of the query's result.
std::vector<FieldInfo> FieldsOf(Query& query);

/// All rows that are left of the query's result. fields: of its columns, perhaps followed by others, which stay Null.
std::unique_ptr<recordset::RowStore> ReadRows(Query& query, const Session& session, std::vector<FieldInfo> fields,
                                              const engines::Limits& limits, std::string_view shown);

}  // namespace kpTables::engines::odbc
