#include <cstdio>

#include "kpTables/Convert.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/BillCorrection.h"
#include "kpTables/bookkeeping/Masters.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/commands/BillCommand.h"
#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/input/BillFile.h"
#include "platform/Program.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::BillsRefused;
using bookkeeping::Corrected;
using bookkeeping::EntryKind;
using bookkeeping::MasterKind;

/// The kind as which a bill's lines are read: a transfer among the outbound bills is one.
EntryKind EntryKindOf(const bookkeeping::StoredBill& bill, EntryKind asked) {
    return bill.IsTransfer() ? EntryKind::Transfer : asked;
}

bookkeeping::BillChanges ChangesOf(Workspace& workspace, const BillOptions& options,
                                   const bookkeeping::SheetOptions& sheet) {
    bookkeeping::BillChanges changes;
    const auto given = [&](const char* column) -> const std::string* {
        const auto found = options.header.find(column);
        return found == options.header.end() ? nullptr : &found->second;
    };
    const auto id = [&](const char* column, MasterKind kind) -> std::optional<std::int32_t> {
        const auto* text = given(column);
        if (!text) return std::nullopt;
        return text->empty() ? 0 : bookkeeping::MasterId(workspace.connection, kind, *text);
    };
    if (const auto* date = given("日期")) {
        changes.date = DateOf(*date);
        if (!changes.date) throw UsageError(Message("'{1}' is no date", *date));
    }
    changes.warehouse = id("仓库", MasterKind::Warehouse);
    changes.partner = id("单位", options.kind == EntryKind::Inbound ? MasterKind::Supplier : MasterKind::Customer);
    changes.project = id("项目", MasterKind::Project);
    if (const auto* text = given("单据类型")) changes.type = *text;
    if (const auto* text = given("类型")) changes.subtype = *text;
    if (const auto* text = given("单据编号")) changes.number = *text;
    if (const auto* text = given("说明")) changes.remarks = *text;
    if (!options.file.empty()) {
        changes.lines = ReadSheetLines(workspace.connection, input::ReadBillFile(options.file), sheet);
    } else if (!options.lines.empty()) {
        changes.lines = ReadSheetLines(workspace.connection, RowsOfLines(options), sheet);
    }
    return changes;
}

/// Who was named, else the operator, the firm's 财务主管, or the user of this system.
std::string AuditorFor(Workspace& workspace, const BillOptions& options) {
    if (options.auditor) return *options.auditor;
    if (workspace.acting) return workspace.acting->Name();
    const std::string accountant(Trim(Text(workspace.tables.Get_AccInfo("财务主管"))));
    if (!accountant.empty()) return accountant;
    return platform::UserName();
}

void Tell(const Corrected& corrected, const std::string& what) {
    TellLine(BillLabel(corrected.bill) + OtherHalf(corrected.counterpart) + ": " + what);
}

/// Runs a correction with its line in the log, in one transaction.
template <class Action>
int Correct(Workspace& workspace, const std::string& what, const std::string& logged, Action action) {
    try {
        Transaction transaction(*workspace.connection);
        const Corrected corrected = action();
        workspace.Log(logged + corrected.bill.type + " " + BillLabel(corrected.bill));
        transaction.Commit();
        Tell(corrected, what);
        return kSucceeded;
    } catch (const BillsRefused& refused) {
        TellFaults(refused.Faults(), "");
    }
}

}  // namespace

int EditBill(const BillOptions& options, const GlobalOptions& global) {
    if (options.header.empty() && options.lines.empty() && options.file.empty()) {
        throw UsageError(Message("bill edit needs what to change, such as --date, --partner or --lines FILE"));
    }
    const auto host = std::make_shared<ConsoleHost>(global.today, global.answer);
    Workspace workspace(options.book, host, global);
    RequireEntry(workspace, options.kind);
    return Correct(workspace, "changed", "修改", [&] {
        const std::int32_t id = BillMeant(workspace, options);
        auto sheet = SheetOptionsOf(workspace, options, host->Today());
        const auto family = FamilyOf(options.kind);
        sheet.kind = EntryKindOf(bookkeeping::ReadBill(*workspace.connection, family, id), options.kind);
        return bookkeeping::EditBill(workspace.connection, family, id, ChangesOf(workspace, options, sheet),
                                     EntryOptionsOf(options, host->Today()));
    });
}

int RemoveBill(const BillOptions& options, const GlobalOptions& global) {
    const auto host = std::make_shared<ConsoleHost>(global.today, global.answer);
    Workspace workspace(options.book, host, global);
    workspace.Require(bookkeeping::rights::kDeleteBills);
    return Correct(workspace, "removed", "删除", [&] {
        return bookkeeping::RemoveBill(workspace.connection, FamilyOf(options.kind), BillMeant(workspace, options),
                                       EntryOptionsOf(options, host->Today()));
    });
}

int AuditBill(const BillOptions& options, const GlobalOptions& global) {
    const auto host = std::make_shared<ConsoleHost>(global.today, global.answer);
    Workspace workspace(options.book, host, global);
    workspace.Require(bookkeeping::rights::kAudit);
    const auto family = FamilyOf(options.kind);
    if (options.undo) {
        return Correct(workspace, Message("not audited any more"), "取消审核", [&] {
            return bookkeeping::UndoAudit(workspace.connection, family, BillMeant(workspace, options));
        });
    }
    const std::string auditor = AuditorFor(workspace, options);
    if (auditor.empty()) throw UsageError(Message("bill audit needs the auditor: --auditor NAME, or --operator NAME"));
    return Correct(workspace, Message("audited by {1}", auditor), "审核", [&] {
        return bookkeeping::AuditBill(workspace.connection, family, BillMeant(workspace, options), auditor,
                                      options.date.value_or(host->Today()));
    });
}

}  // namespace kpTables::kpbook::commands
