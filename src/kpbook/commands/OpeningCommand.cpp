#include "kpTables/bookkeeping/Opening.h"

#include <algorithm>
#include <cstdio>

#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/BalanceTexts.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/input/ImportFaults.h"
#include "kpbook/input/OpeningFile.h"

namespace kpTables::kpbook::commands {

namespace {

/// Tells what is wrong with the file's form and what the book says of its rows, line by line.
void RefuseOpening(const input::OpeningFile& file, const std::vector<bookkeeping::OpeningFault>& found) {
    auto faults = file.Faults();
    for (const auto& fault : found) faults.push_back({file.Line(fault.row), fault.column, fault.reason});
    if (faults.empty()) return;
    std::ranges::stable_sort(faults, {}, &input::OpeningFile::Fault::line);
    input::ImportFaults told(file.Name());
    for (const auto& fault : faults) told.Add(fault.line, fault.column, fault.reason);
    told.Finish();
    throw CommandError(file.Name() + ": " + Counted(told.BadRows(), "bad row") + ", nothing was entered");
}

}  // namespace

int Opening(const OpeningOptions& options, const GlobalOptions& global) {
    const Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    const input::OpeningFile file(options.path);
    const auto purpose =
        file.Faults().empty() ? bookkeeping::OpeningPurpose::Enter : bookkeeping::OpeningPurpose::Check;
    const auto result = bookkeeping::EnterOpening(workspace.connection, file.Rows(), purpose);
    RefuseOpening(file, result.faults);
    std::fprintf(stderr, "opening stock of %d-%d: %s added, %d changed\n", static_cast<int>(result.year),
                 static_cast<int>(result.month), Counted(result.added, "row").c_str(),
                 static_cast<int>(result.changed));
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
