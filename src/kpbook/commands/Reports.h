// The reports: which of the component's methods each shows, and what it can be asked for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kpTables/CTables.h"
#include "kpbook/commands/Options.h"

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
    std::string_view answers;
    std::vector<ReportFilter> filters;
    /// Columns whose sum means something: amounts, and quantities where a row of the report has added up different
    /// products already. Unit prices are never among them, nor are pieces added to tons.
    std::vector<std::string_view> totalled;
    /// Asks the method; what it writes back comes back in the filters.
    RecordsetPtr (*run)(CTables& tables, ReportFilters& filters);
    /// What SQL Server's dialect leaves out of account; "" when nothing of what is asked for.
    std::string_view (*sqlNote)(const ReportFilters& filters) = nullptr;
};

const std::vector<ReportKind>& ReportKinds();
/// Null when there is none of that name.
const ReportKind* FindReport(std::string_view name);
/// "--month M (required), --warehouse D"
std::string FilterList(const ReportKind& kind);
/// Why the options that were given ("--month") and their values do not go with the report; "" when they do.
std::string UsageFault(const ReportKind& kind, const std::vector<std::string>& given, const ReportFilters& filters);

}  // namespace kpTables::kpbook::commands
