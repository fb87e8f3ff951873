// Results in the output format that was asked for.
#pragma once

#include <string>
#include <vector>

#include "kpTables/Recordset.h"
#include "kpbook/GlobalOptions.h"
#include "kpbook/output/RowWriters.h"

namespace kpTables::kpbook::output {

/// Writes a recordset, read from its current row to Eof, and tells the number of rows on standard error. The totals of
/// the columns that are totalled stand below a table, and nowhere in the formats that programs read.
void WriteRecordset(Recordset& recordset, const GlobalOptions& global, const std::vector<int>& totalled = {});

/// Writes several recordsets: with their titles above them, in JSON as one object with a recordset a title, in a
/// workbook as a sheet a title.
void WriteSections(const std::vector<Section>& sections, const GlobalOptions& global);

/// Writes a method's result: a recordset as above, a single value as a line of its own or, in the formats that have
/// columns, as one row under the method's name. Nothing is written for a method without a result.
void WriteResult(const std::string& method, const Variant& result, const GlobalOptions& global);

}  // namespace kpTables::kpbook::output
