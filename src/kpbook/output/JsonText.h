// Values written as JSON. Texts are written as UTF-8, with U+FFFD for invalid bytes.
#pragma once

#include <string>
#include <string_view>

#include "kpTables/Recordset.h"

namespace kpTables::kpbook::output {

void AppendJsonString(std::string& out, std::string_view text);
/// The shortest text that reads back as the same number and not as a whole one: "25.0", "0.1", "1e+300". Error 6 when
/// the number is not finite.
void AppendJsonNumber(std::string& out, double value);
/// The form of arguments and single results: {"currency":"12.5"}, {"date":...}, {"empty":true}, ...;
/// a recordset as {"columns":[...],"rows":[...]}, read from its current row to Eof.
void AppendJsonValue(std::string& out, const Variant& value);
/// The form of cells in a recordset's rows: money and dates as text, Null and Empty as null.
void AppendJsonCell(std::string& out, const Variant& value);
/// [{"name":...,"type":...},...]
void AppendJsonColumns(std::string& out, const Recordset& recordset);
/// The current row as [value,...].
void AppendJsonRow(std::string& out, const Recordset& recordset);

}  // namespace kpTables::kpbook::output
