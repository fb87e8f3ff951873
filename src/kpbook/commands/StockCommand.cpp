#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/commands/ReportView.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

int Stock(const StockOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    auto resolved = options;
    ResolveNames(workspace, resolved);
    ReportDesk desk(workspace, options.showing, global);
    if (options.showing.raw) {
        output::WriteRecordset(*StockRows(workspace, resolved, desk.Valuation()), global);
    } else {
        output::WriteView(StockViewOf(desk, resolved), global,
                          options.showing.chart ? output::Charts::Drawn : output::Charts::Hidden);
    }
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
