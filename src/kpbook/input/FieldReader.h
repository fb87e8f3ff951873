// One field of a CSV file, read as a column's type.
#pragma once

#include <string>
#include <string_view>

#include "kpTables/Variant.h"

namespace kpTables::kpbook::input {

struct FieldValue {
    Variant value;
    std::string problem;  ///< why the text is not a value of the type; empty when it is
};

/// Reads a field's text (not empty) as a value of the column's type. Numbers are plain decimals, whole numbers within
/// the column's range, money with at most four decimals; flags are True, False, yes, no, -1, 1 or 0; texts are UTF-8.
/// encoding: of the file that the text was converted from, for the problem's text.
FieldValue ReadField(std::string_view text, VarType type, std::string_view encoding = "UTF-8");

}  // namespace kpTables::kpbook::input
