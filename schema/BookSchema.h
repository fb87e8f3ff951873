// The statements that create the tables of a book, in Jet's DDL.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kpTables::schema {

/// The number of the schema, which every book records; it rises with every change. Who changes book.sql raises it,
/// writes the checksum of the new statements beside it and keeps a book of the old format under tests/formats.
inline constexpr std::int32_t kFormat = 2;
inline constexpr std::uint64_t kFormatChecksum = 8693233652225391800U;

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
