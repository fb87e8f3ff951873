#include <algorithm>
#include <cstdio>

#include "kpTables/bookkeeping/Closing.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/BalanceTexts.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::ClosingOutcome;

std::string LineOf(const bookkeeping::ClosingResult& result, std::int16_t month) {
    switch (result.outcome) {
        case ClosingOutcome::Done:
            return Message("{1}: reopened", MonthLabel(result.name, result.year, month));
        case ClosingOutcome::NothingToDo:
            return Message("{1}: not closed, nothing to reopen", MonthLabel(result.name, result.year, month));
        case ClosingOutcome::LaterMonthsClosed:
            return "kpbook: " + Message("{1}: not reopened: month {2} is closed; reopen that first",
                                        MonthLabel(result.name, 0, month), result.month);
        default:
            return "kpbook: " +
                   Message("{1}: not reopened: {2}", MonthLabel(result.name, result.year, month), result.reason);
    }
}

}  // namespace

int Reopen(const ReopenOptions& options, const GlobalOptions& global) {
    const Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    const auto results = bookkeeping::ReopenMonth(
        workspace.connection, {options.month, workspace.WarehouseOf(options.warehouse), global.isSQL});
    for (const auto& result : results) {
        TellLine(LineOf(result, options.month));
        if (result.outcome != ClosingOutcome::Done) continue;
        workspace.Log("反结帐 " + MonthLabel(result.name, result.year, options.month));
    }
    const auto was = [&results](ClosingOutcome outcome) {
        return std::ranges::count(results, outcome, &bookkeeping::ClosingResult::outcome);
    };
    const auto done = was(ClosingOutcome::Done);
    const auto fine = done + was(ClosingOutcome::NothingToDo);
    return done > 0 && fine == std::ssize(results) ? kSucceeded : kFailed;
}

}  // namespace kpTables::kpbook::commands
