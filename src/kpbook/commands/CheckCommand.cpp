#include <cstdio>

#include "kpTables/bookkeeping/Check.h"
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

RecordsetPtr TableOf(const std::vector<bookkeeping::Finding>& findings, const MasterNames& names, OutputFormat format) {
    auto rows = FigureTable(Translatable("what"), Translatable("expected"), Translatable("found"), format);
    const auto shown = [](const Variant& value) { return value.IsNull() ? value : Variant(output::CellText(value)); };
    const auto unlessZero = [](std::int32_t value) { return value == 0 ? Variant::Null() : Variant(value); };
    for (const auto& finding : findings) {
        rows->AddNew();
        rows->SetValue(0, names.Warehouse(finding.warehouse));
        rows->SetValue(1, unlessZero(finding.year));
        rows->SetValue(2, unlessZero(finding.month));
        rows->SetValue(3, finding.product ? Variant(*finding.product) : Variant::Null());
        rows->SetValue(4, names.Product(finding.product));
        rows->SetValue(5, finding.what);
        rows->SetValue(6, shown(finding.expected));
        rows->SetValue(7, shown(finding.found));
        rows->Update();
    }
    rows->MoveFirst();
    return rows;
}

void Repair(Workspace& workspace, const std::shared_ptr<Host>& host) {
    workspace.Require(bookkeeping::rights::kClose);
    const auto repair = bookkeeping::RemoveDoubledRows(*workspace.connection, host);
    const auto line = repair.doubled == 0 ? Message("no doubled rows that are equal")
                      : repair.removed == 0
                          ? Message("nothing removed")
                          : CountedMessage(repair.removed, "{1} doubled row removed", "{1} doubled rows removed");
    if (repair.removed > 0) workspace.Log("修复 仓库余额表: " + line);
    TellLine("仓库余额表: " + line);
}

}  // namespace

int Check(const CheckOptions& options, const GlobalOptions& global) {
    const auto host = std::make_shared<ConsoleHost>(global.today, global.answer);
    Workspace workspace(options.book, host, global, options.repair ? Access::Change : Access::Read);
    if (options.repair) Repair(workspace, host);
    const auto findings = bookkeeping::CheckBook(*workspace.book);
    if (findings.empty()) return kSucceeded;
    // A damaged file may not even give names.
    const auto names = findings.front().damaged ? MasterNames() : MasterNames(*workspace.connection);
    output::WriteRecordset(*TableOf(findings, names, global.format), global);
    return kFailed;
}

}  // namespace kpTables::kpbook::commands
