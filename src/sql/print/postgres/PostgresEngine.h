// PostgreSQL's answers to the printer's hooks. A book keeps Currency as a count of ten-thousandths, dates as
// timestamps, flags as -1 and 0, and texts as a domain over bpchar that has the order of texts as its collation.
#pragma once

#include <string>
#include <string_view>

#include "sql/print/Engine.h"

namespace kpTables::sql::print::postgres {

/// hasExtension: of a database that has the extension kptables.
const Engine& PostgresEngine(bool hasExtension = false);

/// A name between double quotes. One that the server would cut is shortened so that it stays unique.
std::string QuotedName(std::string_view name);
/// A text between single quotes.
std::string QuotedText(std::string_view text);

/// The name without quotes, shortened where the server would cut it; "~" for an empty one, which the server does not
/// take.
std::string ServerName(std::string_view name);

/// See Engine.
std::string ColumnText(const std::string& table, const bind::Definition& definition, const std::string& defaultText);
std::string KeyText(const bind::SchemaChange& change);
/// Keeps the sequence of the table's counter ahead of values that a statement gives.
std::string CounterTrigger(const std::string& table, const bind::SchemaChange& change);

/// What ALTER TABLE does to a column that gets another definition; behind it comes USING and the value converted. The
/// default that the column has goes, so that the server need not convert it. defaultText: "" for none.
std::string ColumnChangeText(const bind::Definition& definition, const std::string& defaultText);

/// The column that holds the row id of a table without a counter.
inline constexpr std::string_view kHiddenRowId = "kp_row";

}  // namespace kpTables::sql::print::postgres
