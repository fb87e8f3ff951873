// One function a format: a recordset's columns and rows, from its current row to Eof. Each answers the number of rows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kpTables/Recordset.h"

namespace kpTables::kpbook::output {

class Output;

// For people to read. A last row has the totals of the columns that are totalled, unless there are no rows.

/// Columns aligned by their width on a terminal, numbers flush right.
std::int64_t WriteTable(Recordset& recordset, Output& output, const std::vector<int>& totalled);
std::int64_t WriteMarkdown(Recordset& recordset, Output& output, const std::vector<int>& totalled);

// For programs to read.

/// RFC 4180 with LF as the line end.
std::int64_t WriteCsv(Recordset& recordset, Output& output);
/// {"columns":[...],"rows":[...]}, one row a line.
std::int64_t WriteJson(Recordset& recordset, Output& output);
/// A recordset under its title.
struct Section {
    std::string title;
    RecordsetPtr rows;
};

/// A workbook at path with a sheet for each section. Money is a number with four decimals where a Double holds it
/// exactly, else text.
std::int64_t WriteXlsx(const std::vector<Section>& sections, const std::string& path);
/// A workbook of one sheet.
std::int64_t WriteXlsx(Recordset& recordset, const std::string& path);

}  // namespace kpTables::kpbook::output
