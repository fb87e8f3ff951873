// The statements that make the tables of a book, in Jet's DDL.
#pragma once

#include <string_view>
#include <vector>

namespace kpTables::schema {

/// The CREATE statements of every table and index of a book, one text each, in the order in which they are to be run.
std::vector<std::string_view> BookSchema();

/// A column that SQL Server's dialect calls by another name than the statements above.
struct SqlServerName {
    std::string_view table;
    std::string_view name;
    std::string_view sqlServerName;
};
inline constexpr SqlServerName kSqlServerNames[] = {{"Header", "Table", "TableName"}, {"Header", "Index", "ColIndex"}};

}  // namespace kpTables::schema
