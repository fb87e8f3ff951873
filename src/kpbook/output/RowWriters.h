// One function per format: each writes a recordset's columns and its rows from the current row to Eof, and returns the
// number of rows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kpTables/Recordset.h"
#include "kpbook/output/Presentation.h"

namespace kpTables::kpbook::output {

class Output;

// For people to read. The last row contains the totals of the columns that the presentation lists, unless there are no
// rows.

/// Columns aligned by their width on a terminal, numbers to the right.
std::int64_t WriteTable(Recordset& recordset, Output& output, const Presentation& presentation);
std::int64_t WriteMarkdown(Recordset& recordset, Output& output, const Presentation& presentation);

// For programs to read.

/// RFC 4180, with LF as the line end.
std::int64_t WriteCsv(Recordset& recordset, Output& output);
/// As WriteCsv, for a table that is imported again: Null is \N in the columns that marked names, where an empty field
/// would mean another value, and the text \N is quoted.
std::int64_t WriteTableCsv(Recordset& recordset, Output& output, const std::vector<bool>& marked);
/// {"columns":[...],"rows":[...]}, one row per line.
std::int64_t WriteJson(Recordset& recordset, Output& output);

// Workbooks, for both.

/// A recordset with a title.
struct Section {
    std::string title;
    RecordsetPtr rows;
    std::vector<int> totalled = {};  ///< columns whose sums are written below, unless there are no rows
};

/// A workbook with a sheet for each section, with its name. Columns are as wide as their cells, the headings stay in
/// sight, and the totals are bold. Money is shown with two decimals and keeps all four; an amount that a sheet's
/// numbers cannot hold is text.
std::int64_t WriteXlsx(const std::vector<Section>& sections, const std::string& path);

}  // namespace kpTables::kpbook::output
