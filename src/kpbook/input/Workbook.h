// What a workbook (xlsx) says about all of its sheets.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "kpbook/input/ZipArchive.h"

namespace kpTables::kpbook::input {

struct Workbook {
    std::string sheet;               ///< path of the sheet that was asked for
    std::vector<std::string> texts;  ///< the texts that cells refer to by number
    std::vector<bool> dateStyles;    ///< whether the numbers of cells of a style are dates
    bool from1904 = false;           ///< days are counted from 1904-01-01
};

/// sheet: the name of a sheet; empty: the first. A CommandError says what is missing or damaged; an unknown sheet's
/// lists those that there are.
Workbook ReadWorkbook(ZipArchive& archive, const std::string& sheet);

/// Whether a number format shows dates or times.
bool IsDateFormat(const std::string& code);

}  // namespace kpTables::kpbook::input
