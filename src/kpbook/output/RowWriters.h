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
/// {"columns":[...],"rows":[...]}, one row per line.
std::int64_t WriteJson(Recordset& recordset, Output& output);
/// A recordset with a title.
struct Section {
    std::string title;
    RecordsetPtr rows;
};

/// A workbook with a sheet for each section. Money is a number with four decimals where a sheet's numbers can hold it,
/// otherwise text.
std::int64_t WriteXlsx(const std::vector<Section>& sections, const std::string& path);
/// A workbook with one sheet.
std::int64_t WriteXlsx(Recordset& recordset, const std::string& path);

}  // namespace kpTables::kpbook::output
