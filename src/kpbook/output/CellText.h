// Values as the tables, files and messages of the command line show them.
#pragma once

#include <string>

#include "kpTables/Recordset.h"

namespace kpTables::kpbook::output {

/// Full precision, nothing lost: the shortest number that reads back the same, dates as "2004-03-07 12:30:00", True and
/// False; Null and Empty are "".
std::string CellText(const Variant& value);
/// As CellText, but for people: a Double has fifteen digits at most, as in the statements' texts, so that what a sum of
/// doubles leaves over behind them is not shown.
std::string ShownText(const Variant& value);
/// "25", "0.1", "1e+300": the shortest text that reads back as the same number.
std::string NumberText(double value);
/// Whether a column of that type is set flush right.
bool IsNumber(VarType type) noexcept;
/// "Long", "Currency", ...
std::string_view TypeName(VarType type) noexcept;

}  // namespace kpTables::kpbook::output
