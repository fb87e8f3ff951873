// Values as tables, files and messages show them.
#pragma once

#include <string>

#include "kpTables/Recordset.h"

namespace kpTables::kpbook::output {

/// With full precision: the shortest number that reads back the same, dates as "2004-03-07 12:30:00", True and
/// False; Null and Empty are "".
std::string CellText(const Variant& value);
/// As CellText, but a Double has at most fifteen digits, as in the texts of statements, so that the rounding errors of
/// sums are not shown.
std::string ShownText(const Variant& value);
/// "25", "0.1", "1e+300": the shortest text that reads back as the same number.
std::string NumberText(double value);
/// Whether columns of the type are numeric and aligned right.
bool IsNumber(VarType type) noexcept;
/// "Long", "Currency", ...
std::string_view TypeName(VarType type) noexcept;

}  // namespace kpTables::kpbook::output
