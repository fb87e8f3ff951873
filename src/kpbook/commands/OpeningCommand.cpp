#include "kpTables/bookkeeping/Opening.h"

#include <algorithm>
#include <cstdio>

#include "kpTables/Transaction.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
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
    throw CommandError(CountedMessage(told.BadRows(), "{2}: {1} bad row, nothing was entered",
                                      "{2}: {1} bad rows, nothing was entered", file.Name()));
}

}  // namespace

int Opening(const OpeningOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    const input::OpeningFile file(options.path);
    const auto purpose =
        file.Faults().empty() ? bookkeeping::OpeningPurpose::Enter : bookkeeping::OpeningPurpose::Check;
    Transaction transaction(*workspace.connection);
    const auto result = bookkeeping::EnterOpening(workspace.connection, file.Rows(), purpose);
    RefuseOpening(file, result.faults);
    const std::string done = CountedMessage(result.added, "opening stock of {2}-{3}: {1} row added, {4} changed",
                                            "opening stock of {2}-{3}: {1} rows added, {4} changed", result.year,
                                            result.month, result.changed);
    workspace.Log(done);
    // A method answers an error that it traps with a default, which must not be entered.
    if (workspace.LogIncidents()) return kFailed;
    transaction.Commit();
    TellLine(done);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
