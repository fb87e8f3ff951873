// What people read of each report.
#pragma once

#include "kpbook/commands/Options.h"
#include "kpbook/commands/ReportLayout.h"

namespace kpTables::kpbook::commands {

ReportLayout BillsLayout(const Recordset& rows, const ReportFilters& filters);
ReportLayout BalanceLayout(const Recordset& rows, const ReportFilters& filters);
ReportLayout ProductsLayout(const Recordset& rows, const ReportFilters& filters);
ReportLayout PartnersLayout(const Recordset& rows, const ReportFilters& filters);
ReportLayout CostsLayout(const Recordset& rows, const ReportFilters& filters);
ReportLayout DailyLayout(const Recordset& rows, const ReportFilters& filters);
ReportLayout DayLayout(const Recordset& rows, const ReportFilters& filters);
ReportLayout ProjectsLayout(const Recordset& rows, const ReportFilters& filters);
ReportLayout StockLayout();
ReportLayout PayrollLayout(const Recordset& rows);

/// The columns of the project summary that hold a month, in order, with the month.
std::vector<std::pair<std::string, int>> MonthColumns(const Recordset& rows);

}  // namespace kpTables::kpbook::commands
