#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/commands/ReportLayouts.h"
#include "kpbook/commands/ReportView.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

RecordsetPtr Sheet(CTables& tables, const PayrollOptions& options) {
    constexpr std::int16_t kSummed = 0;
    if (options.month) return tables.rs工资表(*options.month, {}, bool(options.fresh));
    return tables.rs工资表(kSummed, options.toMonth.value_or(0));
}

}  // namespace

int Payroll(const PayrollOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    const auto rows = Sheet(workspace.tables, options);
    ReportDesk desk(workspace, options.showing, global);
    if (options.showing.raw || desk.isForPrograms) {
        std::vector<int> amounts;
        for (int i = 0; i < rows->FieldCount(); ++i) {
            if (rows->FieldAt(i).type == VarType::Currency) amounts.push_back(i);
        }
        output::WriteRecordset(*rows, global, amounts);
        return kSucceeded;
    }
    auto laidOut = LayOut(*rows, PayrollLayout(*rows), desk.columns, workspace.tables, desk.names, false);
    output::WriteView({"", {}, laidOut.rows, laidOut.presentation, {}}, global);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
