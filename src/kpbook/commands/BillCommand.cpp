#include "kpbook/commands/BillCommand.h"

#include <cstdio>

#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/Transaction.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Utf8.h"
#include "kpbook/commands/BillQuestions.h"
#include "kpbook/input/BillFile.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::BillFamily;
using bookkeeping::BillsRefused;
using bookkeeping::EnteredBill;
using bookkeeping::EntryKind;

std::vector<FieldInfo> EnteredColumns(EntryKind kind) {
    const bool isCost = kind == EntryKind::Cost;
    std::vector<FieldInfo> fields{{"单据", VarType::String}};
    if (!isCost) fields.push_back({"单据编号", VarType::String});
    fields.push_back({isCost ? "CostID" : "BillID", VarType::Long});
    if (kind == EntryKind::Transfer) fields.push_back({"入库BillID", VarType::Long});
    fields.push_back({"日期", VarType::Date});
    fields.push_back({"行数", VarType::Long});
    fields.push_back({"数量", VarType::Double});
    if (!isCost) {
        fields.push_back({"除税金额", VarType::Currency});
        fields.push_back({"税额", VarType::Currency});
    }
    fields.push_back({"金额", VarType::Currency});
    return fields;
}

RecordsetPtr EnteredRows(const std::vector<EnteredBill>& bills, EntryKind kind) {
    auto rows = std::make_shared<MemoryRecordset>(EnteredColumns(kind));
    for (const EnteredBill& entered : bills) {
        const auto totals = bookkeeping::TotalsOf(entered.bill);
        int column = 0;
        const auto add = [&](const Variant& value) { rows->SetValue(column++, value); };
        rows->AddNew();
        add(entered.key);
        if (kind != EntryKind::Cost) add(entered.bill.number);
        add(entered.id);
        if (kind == EntryKind::Transfer) add(entered.counterpart);
        add(*entered.bill.date);
        add(static_cast<std::int32_t>(entered.bill.lines.size()));
        add(totals.quantity);
        if (kind != EntryKind::Cost) {
            add(totals.net);
            add(totals.tax);
            add(totals.gross);
        } else {
            add(totals.net);
        }
        rows->Update();
    }
    if (rows->RecordCount() > 0) rows->MoveFirst();
    return rows;
}

/// "入库单 RK1-01-0001", for the log.
std::string LogText(const EnteredBill& entered) {
    return entered.bill.family == BillFamily::Cost ? "成本单 " + std::to_string(entered.id)
                                                   : entered.bill.type + " " + entered.bill.number;
}

std::vector<bookkeeping::SheetRow> RowsToEnter(Workspace& workspace, const BillOptions& options,
                                               const bookkeeping::SheetOptions& sheet) {
    if (!options.file.empty()) return input::ReadBillFile(options.file);
    if (!options.lines.empty()) return RowsOfLines(options);
    if (!InputIsTerminal()) {
        throw UsageError(Message("bill add needs the bills: a FILE, - for standard input, or --line for one bill"));
    }
    return AskForBill(workspace, sheet);
}

}  // namespace

std::int32_t BillMeant(Workspace& workspace, const BillOptions& options) {
    return bookkeeping::FindBill(*workspace.connection, FamilyOf(options.kind), options.which, options.month);
}

void RequireEntry(const Workspace& workspace, EntryKind kind) {
    namespace rights = bookkeeping::rights;
    if (kind == EntryKind::Cost) return workspace.Require(rights::kCost);
    if (kind != EntryKind::Outbound) workspace.Require(rights::kInbound);
    if (kind != EntryKind::Inbound) workspace.Require(rights::kOutbound);
}

void RequireReading(const Workspace& workspace, EntryKind kind) {
    namespace rights = bookkeeping::rights;
    const char* const entry = kind == EntryKind::Inbound ? rights::kInbound
                              : kind == EntryKind::Cost  ? rights::kCost
                                                         : rights::kOutbound;
    for (const char* right : {entry, rights::kAudit, rights::kDeleteBills}) {
        if (workspace.acting && workspace.acting->Has(right)) return;
    }
    workspace.Require(rights::kReports);
}

bookkeeping::EntryOptions EntryOptionsOf(const BillOptions& options, Date today) {
    return {today, options.allowNegative, options.red};
}

bookkeeping::SheetOptions SheetOptionsOf(const Workspace& workspace, const BillOptions& options, Date today) {
    bookkeeping::SheetOptions sheet{options.kind, options.gross, options.header, today, ""};
    if (workspace.acting) sheet.clerk = workspace.acting->Name();
    const std::string warehouse = options.kind == EntryKind::Transfer ? "调出仓库" : "仓库";
    if (const auto managed = workspace.WarehouseOr(std::nullopt)) {
        sheet.defaults.try_emplace(warehouse, std::to_string(*managed));
    }
    return sheet;
}

std::vector<bookkeeping::SheetRow> RowsOfLines(const BillOptions& options) {
    std::vector<bookkeeping::SheetRow> rows;
    for (const std::string& word : options.lines) {
        rows.push_back(input::ReadLineWord(word, static_cast<std::int64_t>(rows.size()) + 1));
    }
    return rows;
}

void TellFaults(const std::vector<bookkeeping::BillFault>& faults, const std::string& source) {
    constexpr std::size_t kShown = 100;
    bool isStock = false;
    for (std::size_t i = 0; i < faults.size(); ++i) {
        const auto& fault = faults[i];
        isStock = isStock || fault.isStock;
        if (i >= kShown) continue;
        std::string text = fault.column.empty() ? fault.reason : Printable(fault.column) + ": " + fault.reason;
        if (!fault.bill.empty()) text = Message("bill {1}: {2}", Printable(fault.bill), text);
        if (fault.row > 0) text = Message("line {1}: {2}", fault.row, text);
        TellLine(source.empty() ? text : source + ": " + text);
    }
    if (faults.size() > kShown) TellLine(Message("and {1} more", faults.size() - kShown));
    const auto count = std::ssize(faults);
    throw CommandError(
        isStock ? CountedMessage(count, "{1} fault, nothing was changed; --allow-negative lets stock go below zero",
                                 "{1} faults, nothing was changed; --allow-negative lets stock go below zero")
                : CountedMessage(count, "{1} fault, nothing was changed", "{1} faults, nothing was changed"));
}

std::string BillLabel(const bookkeeping::StoredBill& bill) {
    const std::string id = Message("id {1}", bill.id);
    return bill.number.empty() ? id : bill.number + " (" + id + ")";
}

std::string OtherHalf(std::int32_t counterpart) {
    return counterpart == 0 ? "" : Message(" and its other half (id {1})", counterpart);
}

int AddBills(const BillOptions& options, const GlobalOptions& global) {
    const auto host = std::make_shared<ConsoleHost>(global.today, global.answer);
    Workspace workspace(options.book, host, global);
    RequireEntry(workspace, options.kind);
    const auto sheet = SheetOptionsOf(workspace, options, host->Today());
    const auto rows = RowsToEnter(workspace, options, sheet);
    if (rows.empty()) return kFailed;
    std::vector<EnteredBill> entered;
    try {
        Transaction transaction(*workspace.connection);
        entered =
            bookkeeping::EnterBillSheet(workspace.connection, rows, sheet, EntryOptionsOf(options, host->Today()));
        for (const EnteredBill& bill : entered) workspace.Log("录入" + LogText(bill));
        transaction.Commit();
    } catch (const BillsRefused& refused) {
        TellFaults(refused.Faults(), options.file == "-" ? Message("standard input") : options.file);
    }
    output::WriteRecordset(*EnteredRows(entered, options.kind), global);
    return kSucceeded;
}

int Bill(const BillOptions& options, const GlobalOptions& global) {
    constexpr struct {
        const char* action;
        int (*run)(const BillOptions& options, const GlobalOptions& global);
    } kActions[] = {{"add", AddBills},    {"edit", EditBill}, {"remove", RemoveBill},
                    {"audit", AuditBill}, {"show", ShowBill}, {"print", PrintBill}};
    for (const auto& each : kActions) {
        if (options.action == each.action) return each.run(options, global);
    }
    throw UsageError(Message("bill has no action {1}", options.action));
}

}  // namespace kpTables::kpbook::commands
