// The reports: the method of the component behind each, and its filters.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kpTables/CTables.h"
#include "kpTables/bookkeeping/ReportValuation.h"
#include "kpbook/commands/Options.h"
#include "kpbook/commands/ReportLayout.h"

namespace kpTables::kpbook::commands {

/// A filter as the help shows it: "--direction in|out".
struct ReportFilter {
    std::string_view form;
    bool required = false;

    std::string_view Option() const { return form.substr(0, form.find(' ')); }
};

struct ReportKind {
    std::string_view name;
    std::string_view method;
    const char* answers;  ///< to be translated
    std::vector<ReportFilter> filters;
    /// The method's columns whose sum is meaningful: amounts, and quantities if the report's rows add up different
    /// products already. Unit prices are never summed, nor are pieces added to tons.
    std::vector<std::string_view> totalled;
    /// Calls the method; values that it writes back are put into the filters.
    RecordsetPtr (*run)(CTables& tables, ReportFilters& filters);
    /// What the report is called, for its heading.
    std::string (*title)(const ReportFilters& filters);
    /// What people read of the method's rows.
    ReportLayout (*layout)(const Recordset& rows, const ReportFilters& filters);
    /// The report's figures at a valuation, in the method's columns; null for reports that have none.
    RecordsetPtr (*valued)(CTables& tables, ReportFilters& filters, bookkeeping::Valuation valuation) = nullptr;
    /// Which of the given filters has no effect in SQL Server's dialect; "" when all have.
    std::string_view (*sqlNote)(const ReportFilters& filters) = nullptr;
};

const std::vector<ReportKind>& ReportKinds();
/// The report of that name, or null.
const ReportKind* FindReport(std::string_view name);
/// "--month M (required), --warehouse D"
std::string FilterList(const ReportKind& kind);
/// Why the given options ("--month") and their values do not suit the report; "" when they do.
std::string UsageFault(const ReportKind& kind, const std::vector<std::string>& given, const ReportFilters& filters);

}  // namespace kpTables::kpbook::commands
