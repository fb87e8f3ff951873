#include "bookkeeping/Query.h"

#include "kpTables/Convert.h"
#include "kpTables/Quoted.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

std::int32_t NumberOf(Connection& book, const std::string& query) {
    const auto rows = book.Execute(query);
    if (rows->Eof()) return 0;
    const Variant value = rows->GetValue(0);
    return value.IsNull() ? 0 : CLng(value);
}

bool HasRows(Connection& book, const std::string& query) { return !book.Execute(query)->Eof(); }

std::optional<std::int32_t> IdOf(const Variant& value) {
    if (value.IsNull()) return std::nullopt;
    return CLng(value);
}

std::string LinesText(std::int64_t count) { return CountedMessage(count, "{1} line", "{1} lines"); }

std::string OfMonth(std::int32_t warehouse, std::int32_t month) {
    return " Where dpID=" + std::to_string(warehouse) + " And 月份=" + std::to_string(month);
}

std::string TextIs(const std::string& column, const std::string& text) {
    if (!Trim(text).empty()) return column + "='" + Quoted(text) + "'";
    return "(" + column + " Is Null Or " + column + "='')";
}

}  // namespace kpTables::bookkeeping
