// The statements that create the tables of a book, in Jet's DDL.
#pragma once

#include <string_view>
#include <vector>

namespace kpTables::schema {

/// The CREATE statements of all tables and indexes of a book, in the order in which they must run.
std::vector<std::string_view> BookSchema();

/// A column whose name in SQL Server's dialect differs from the statements above.
struct SqlServerName {
    std::string_view table;
    std::string_view name;
    std::string_view sqlServerName;
};
inline constexpr SqlServerName kSqlServerNames[] = {{"Header", "Table", "TableName"}, {"Header", "Index", "ColIndex"}};

}  // namespace kpTables::schema
