// The charts of the reports.
#pragma once

#include <string_view>
#include <vector>

#include "kpTables/bookkeeping/ReportValuation.h"
#include "kpbook/Workspace.h"
#include "kpbook/output/Chart.h"

namespace kpTables::kpbook::commands {

/// The charts for a report (or for "stock") with these rows, which have the columns that people read. Ends with the
/// rows on the first.
std::vector<output::Chart> ChartsOf(std::string_view report, Recordset& rows);
/// What each warehouse's stock is worth at the end of each month.
output::Chart StockValueChart(Workspace& workspace, bookkeeping::Valuation valuation);

}  // namespace kpTables::kpbook::commands
