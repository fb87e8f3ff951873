// Short answers from a book.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "kpTables/Connection.h"

namespace kpTables::bookkeeping {

/// The first column of the first row; 0 when that is Null or there is no row.
std::int32_t NumberOf(Connection& book, const std::string& query);
/// Whether the query has rows.
bool HasRows(Connection& book, const std::string& query);

/// An id; nothing for Null.
std::optional<std::int32_t> IdOf(const Variant& value);
/// "1 line", "2 lines"
std::string LinesText(std::int64_t count);

/// " Where dpID=1 And 月份=3"
std::string OfMonth(std::int32_t warehouse, std::int32_t month);

/// "列='text'"; Null counts as the empty text.
std::string TextIs(const std::string& column, const std::string& text);

}  // namespace kpTables::bookkeeping
