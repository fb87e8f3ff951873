#include <algorithm>
#include <cstdio>

#include "kpTables/bookkeeping/Closing.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/BalanceTexts.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::ClosingOutcome;

std::string LineOf(const bookkeeping::ClosingResult& result, std::int16_t month) {
    switch (result.outcome) {
        case ClosingOutcome::Done:
            return MonthLabel(result.name, result.year, month) + ": reopened";
        case ClosingOutcome::NothingToDo:
            return MonthLabel(result.name, result.year, month) + ": not closed, nothing to reopen";
        case ClosingOutcome::LaterMonthsClosed:
            return "kpbook: " + MonthLabel(result.name, 0, month) + ": not reopened: month " +
                   std::to_string(result.month) + " is closed; reopen that first";
        default:
            return "kpbook: " + MonthLabel(result.name, result.year, month) + ": not reopened: " + result.reason;
    }
}

}  // namespace

int Reopen(const ReopenOptions& options, const GlobalOptions& global) {
    const Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    const auto results = bookkeeping::ReopenMonth(
        workspace.connection, {options.month, workspace.WarehouseOf(options.warehouse), global.isSQL});
    for (const auto& result : results) {
        std::fprintf(stderr, "%s\n", LineOf(result, options.month).c_str());
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
