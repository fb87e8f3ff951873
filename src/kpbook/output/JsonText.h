// Values written as JSON. Texts are UTF-8 as they stand, with U+FFFD where a book holds invalid bytes.
#pragma once

#include <string>
#include <string_view>

#include "kpTables/Recordset.h"

namespace kpTables::kpbook::output {

void AppendJsonString(std::string& out, std::string_view text);
/// The shortest text that reads back as the same number and reads as no whole number: "25.0", "0.1", "1e+300". Error 6
/// when the number is not finite.
void AppendJsonNumber(std::string& out, double value);
/// The form in which arguments and single results are written: {"currency":"12.5"}, {"date":...}, {"empty":true}, ...;
/// a recordset as {"columns":[...],"rows":[...]}, read from its current row to Eof.
void AppendJsonValue(std::string& out, const Variant& value);
/// The form in which a recordset's rows are written: money and dates as text, Null and Empty as null.
void AppendJsonCell(std::string& out, const Variant& value);
/// [{"name":...,"type":...},...]
void AppendJsonColumns(std::string& out, const Recordset& recordset);
/// The current row as [value,...].
void AppendJsonRow(std::string& out, const Recordset& recordset);

}  // namespace kpTables::kpbook::output
