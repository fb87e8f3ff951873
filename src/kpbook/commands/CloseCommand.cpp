#include <cstdio>
#include <memory>

#include "kpTables/bookkeeping/Closing.h"
#include "kpTables/bookkeeping/ReportValuation.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/BalanceTexts.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::ClosingOutcome;
using bookkeeping::ClosingResult;

std::string MonthOf(const ClosingResult& result) { return MonthLabel(result.name, result.year, result.month); }

/// Why a warehouse was not closed.
std::string Refusal(const ClosingResult& result, std::int16_t month) {
    const std::string asked = MonthLabel(result.name, 0, month);
    const std::string last = std::to_string(result.month);
    switch (result.outcome) {
        case ClosingOutcome::ClosedAlready:
            return Message("{1}: closed already; --again closes it again", MonthOf(result));
        case ClosingOutcome::EarlierMonthOpen:
            return Message("{1}: not closed: month {2} is open; close that first", asked, last);
        case ClosingOutcome::LaterMonthsClosed:
            return Message(
                "{1}: not closed: it is closed through month {2}, and the later months would become stale; --through {2} closes them again too",
                asked, last);
        case ClosingOutcome::LeftAsItWas:
            return Message("{1}: left as it was", MonthOf(result));
        default:
            return Message("{1}: not closed: {2}", MonthOf(result), result.reason);
    }
}

void TellClosed(const ClosingResult& result, bool dryRun) {
    for (const auto& each : result.months) {
        const std::string month = MonthLabel(result.name, each.year, each.month);
        TellLine(dryRun ? CountedMessage(each.products, "{2}: {1} product would be closed",
                                         "{2}: {1} products would be closed", month)
                        : CountedMessage(each.products, "{2}: {1} product closed", "{2}: {1} products closed", month));
    }
    if (result.leftOut > 0) {
        TellLine("kpbook: " + CountedMessage(result.leftOut, "{2}: {1} product on bills without a balance row left out",
                                             "{2}: {1} products on bills without a balance row left out", result.name));
    }
}

/// Whether the warehouse is closed, or has nothing to close.
bool Tell(const ClosingResult& result, const CloseOptions& options) {
    if (result.outcome == ClosingOutcome::Done) {
        TellClosed(result, options.dryRun);
        return true;
    }
    if (result.outcome == ClosingOutcome::NothingToDo) {
        TellLine(Message("{1}: no balance rows of month {2}, nothing to close", result.name, result.month));
        return true;
    }
    TellLine("kpbook: " + Refusal(result, options.month));
    return false;
}

/// The changes of a dry run, a figure a row.
RecordsetPtr ChangesOf(const std::vector<ClosingResult>& results, const MasterNames& names, OutputFormat format) {
    auto rows = FigureTable(Translatable("column"), Translatable("before"), Translatable("after"), format);
    const auto shown = [](const Variant& value) { return value.IsNull() ? value : Variant(output::CellText(value)); };
    for (const auto& result : results) {
        for (const auto& change : result.changes) {
            rows->AddNew();
            rows->SetValue(0, result.name);
            if (change.product) {
                rows->SetValue(1, change.year);
                rows->SetValue(2, change.month);
                rows->SetValue(3, *change.product);
                rows->SetValue(4, names.Product(change.product));
            }
            rows->SetValue(5, change.column);
            rows->SetValue(6, shown(change.before));
            rows->SetValue(7, shown(change.after));
            rows->Update();
        }
    }
    if (rows->RecordCount() > 0) rows->MoveFirst();
    return rows;
}

/// Whether outbound amounts are taken from the cost bills: as asked, else by the book's setting.
bool TakesCosts(const CloseOptions& options, CTables& tables) {
    if (options.costUsed || options.costUnused) return options.costUsed;
    if (const auto setting = bookkeeping::ValuationSetting(tables)) {
        return *setting == bookkeeping::Valuation::CostBills;
    }
    // Whoever forgets --cost once would find out when the figures do not add up.
    if (bookkeeping::ValuationOf(tables) == bookkeeping::Valuation::CostBills) {
        TellLine(Message(
            "the months before were closed at cost, and now outbound amounts come from the outbound bills; --cost "
            "takes the cost bills, and the setting {1} decides for the whole book",
            std::string(bookkeeping::kValuationSetting)));
    }
    return false;
}

}  // namespace

int Close(const CloseOptions& options, const GlobalOptions& global) {
    const auto host = std::make_shared<ConsoleHost>(global.today, global.answer);
    Workspace workspace(options.book, host, global);
    bookkeeping::ClosingOptions closing;
    closing.month = options.month;
    closing.warehouse = workspace.WarehouseOf(options.warehouse);
    closing.costUsed = TakesCosts(options, workspace.tables);
    closing.note = options.date ? *options.date : host->Today();
    closing.again = options.again;
    closing.through = options.through;
    closing.dryRun = options.dryRun;
    closing.isSQL = global.isSQL;

    bool allClosed = true;
    bookkeeping::ClosingWatch watch;
    watch.done = [&](const ClosingResult& result) {
        allClosed = Tell(result, options) && allClosed;
        if (result.outcome == ClosingOutcome::Done && !options.dryRun) {
            for (const auto& each : result.months)
                workspace.Log("结帐 " + MonthLabel(result.name, each.year, each.month));
        }
    };
    if (ErrorIsTerminal()) {
        watch.bar = [](const std::string& label) { return std::make_unique<TerminalProgressBar>(label); };
    }
    const auto results = bookkeeping::CloseMonth(workspace.connection, host, closing, watch);
    if (options.dryRun)
        output::WriteRecordset(*ChangesOf(results, MasterNames(*workspace.connection), global.format), global);
    return allClosed ? kSucceeded : kFailed;
}

}  // namespace kpTables::kpbook::commands
