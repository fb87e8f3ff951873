// Writes results in the selected output format.
#pragma once

#include <string>
#include <vector>

#include "kpTables/Recordset.h"
#include "kpbook/GlobalOptions.h"
#include "kpbook/output/RowWriters.h"

namespace kpTables::kpbook::output {

/// Writes a recordset from its current row to Eof, and the number of rows to standard error. The totals of the columns
/// in totalled are written below a table and in a workbook; formats for programs have none.
void WriteRecordset(Recordset& recordset, const GlobalOptions& global, const std::vector<int>& totalled = {});

/// Writes several recordsets: each below its title, in JSON as one object whose keys are the titles, in a workbook as
/// one sheet per title.
void WriteSections(const std::vector<Section>& sections, const GlobalOptions& global);

/// Writes a method's result: a recordset as above, a single value as a line or, in the formats that have columns, as
/// one row under the method's name. Writes nothing for a method without a result.
void WriteResult(const std::string& method, const Variant& result, const GlobalOptions& global);

}  // namespace kpTables::kpbook::output
