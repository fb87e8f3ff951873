// Bills at the command line: bill add, edit, remove, audit, show and print.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/bookkeeping/BillSheet.h"
#include "kpbook/GlobalOptions.h"
#include "kpbook/Workspace.h"

namespace kpTables::kpbook::commands {

struct BillOptions {
    std::string action;  ///< add, edit, remove, audit, show or print
    std::string book;
    bookkeeping::EntryKind kind = bookkeeping::EntryKind::Inbound;
    std::string file;                           ///< add: the bills; edit: the lines; "": none. "-" is standard input
    std::string which;                          ///< the bill's number or id
    std::map<std::string, std::string> header;  ///< the bill's columns that were given
    std::vector<std::string> lines;             ///< COLUMN=VALUE,...
    std::int16_t month = 0;                     ///< of the number; 0: any
    bool gross = false;
    bool allowNegative = false;
    bool red = false;
    std::optional<std::string> auditor;
    std::optional<Date> date;  ///< of an audit; empty: today
    bool undo = false;
};

int Bill(const BillOptions& options, const GlobalOptions& global);

// The parts of it.
int AddBills(const BillOptions& options, const GlobalOptions& global);
int EditBill(const BillOptions& options, const GlobalOptions& global);
int RemoveBill(const BillOptions& options, const GlobalOptions& global);
int AuditBill(const BillOptions& options, const GlobalOptions& global);
int ShowBill(const BillOptions& options, const GlobalOptions& global);
int PrintBill(const BillOptions& options, const GlobalOptions& global);

// What they share.

/// The bill that the words mean.
std::int32_t BillMeant(Workspace& workspace, const BillOptions& options);
/// Refuses what the operator has no right to enter.
void RequireEntry(const Workspace& workspace, bookkeeping::EntryKind kind);
/// Refuses to show a bill to an operator who may neither enter, audit nor remove such a bill nor print reports.
void RequireReading(const Workspace& workspace, bookkeeping::EntryKind kind);
bookkeeping::EntryOptions EntryOptionsOf(const BillOptions& options, Date today);
bookkeeping::SheetOptions SheetOptionsOf(const Workspace& workspace, const BillOptions& options, Date today);
/// The rows of --line.
std::vector<bookkeeping::SheetRow> RowsOfLines(const BillOptions& options);
/// Writes every fault to standard error and raises a CommandError. source: the file's name, or "".
[[noreturn]] void TellFaults(const std::vector<bookkeeping::BillFault>& faults, const std::string& source);
/// "RK1-03-0001 (id 7)"
std::string BillLabel(const bookkeeping::StoredBill& bill);
/// " and its other half (id 8)"; "" without one.
std::string OtherHalf(std::int32_t counterpart);

}  // namespace kpTables::kpbook::commands
