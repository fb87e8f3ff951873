#include "kpTables/bookkeeping/BillCorrection.h"

#include <utility>

#include "bookkeeping/BillResolver.h"
#include "bookkeeping/BillRows.h"
#include "bookkeeping/CheckedTables.h"
#include "bookkeeping/Refusal.h"
#include "bookkeeping/StockMoves.h"
#include "kpTables/CTables.h"
#include "kpTables/Quoted.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/BillNumbers.h"

namespace kpTables::bookkeeping {

namespace {

/// A bill and, of a transfer, its other half.
struct BillPair {
    StoredBill bill;
    std::optional<StoredBill> other;

    std::int32_t OtherId() const { return other ? other->id : 0; }
};

BillPair ReadPair(const ConnectionPtr& book, BillFamily family, std::int32_t id) {
    BillPair pair{ReadBill(*book, family, id), std::nullopt};
    if (const std::int32_t other = CounterpartOf(book, pair.bill); other != 0) {
        pair.other = ReadBill(*book, OtherDirection(family), other);
    }
    return pair;
}

std::string NameOfBill(const StoredBill& bill) { return bill.number.empty() ? std::to_string(bill.id) : bill.number; }

void RefuseToChange(const StoredBill& bill, const std::string& reason) {
    if (!reason.empty()) throw BillsRefused({{NameOfBill(bill), 0, "", reason}});
}

/// Refuses what may not be changed any more.
void CheckMayChange(const StoredBill& bill, BillResolver& resolver) {
    if (!bill.auditor.empty()) {
        RefuseToChange(bill, "it is audited by " + bill.auditor + "; take the audit back first");
    }
    if (const auto closed = resolver.RefusalOfMonth(bill.warehouse, bill.month); !closed.empty()) {
        RefuseToChange(bill, resolver.WarehouseName(bill.warehouse) + ": " + closed);
    }
}

void CheckStock(Connection& book, const StockMoves& moves, BillResolver& resolver, const EntryOptions& options) {
    if (options.allowNegativeStock) return;
    std::vector<BillFault> faults;
    moves.Check(book, resolver, faults);
    if (!faults.empty()) throw BillsRefused(std::move(faults));
}

template <class Value>
void Take(Value& field, const std::optional<Value>& change) {
    if (change) field = *change;
}

/// A half of a transfer without the other one is a bill of its own.
EntryKind KindOf(const BillPair& pair) {
    if (pair.bill.family == BillFamily::Cost) return EntryKind::Cost;
    if (pair.other) return EntryKind::Transfer;
    return pair.bill.family == BillFamily::Inbound ? EntryKind::Inbound : EntryKind::Outbound;
}

/// The changed bill as if it were entered, to be checked as one; its lines only where they are others.
NewBill AsEntered(const BillPair& pair, const BillChanges& changes) {
    NewBill entry;
    entry.kind = KindOf(pair);
    entry.key = NameOfBill(pair.bill);
    entry.date = pair.bill.date ? *pair.bill.date : Date();
    entry.warehouse = changes.warehouse.value_or(pair.bill.warehouse);
    if (pair.other) entry.toWarehouse = pair.other->warehouse;
    if (pair.other && pair.bill.family == BillFamily::Inbound) std::swap(entry.warehouse, entry.toWarehouse);
    entry.partner = pair.bill.partner;
    entry.project = pair.bill.project;
    entry.type = pair.bill.type;
    entry.subtype = pair.bill.subtype;
    entry.number = pair.bill.number;
    entry.remarks = pair.bill.remarks;
    entry.clerk = pair.bill.clerk;
    if (!pair.bill.date && !changes.date) RefuseToChange(pair.bill, "it has no date; give it one");
    Take(entry.date, changes.date);
    Take(entry.partner, changes.partner);
    Take(entry.project, changes.project);
    Take(entry.type, changes.type);
    Take(entry.subtype, changes.subtype);
    Take(entry.number, changes.number);
    Take(entry.remarks, changes.remarks);
    Take(entry.lines, changes.lines);
    return entry;
}

void CheckFields(const StoredBill& bill, const BillChanges& changes) {
    const bool isCost = bill.family == BillFamily::Cost;
    if (isCost &&
        (changes.partner || changes.project || changes.type || changes.subtype || changes.number || changes.remarks)) {
        RefuseToChange(bill, "a cost bill has a date, a warehouse and lines only");
    }
    if (changes.number && changes.number->empty()) RefuseToChange(bill, "a bill needs a number");
    if (changes.lines && changes.lines->empty()) RefuseToChange(bill, "a bill needs at least one line");
    if (bill.IsTransfer() && changes.partner) RefuseToChange(bill, "a transfer has no partner");
    if (bill.IsTransfer() && changes.type && *changes.type != kTransferType) {
        RefuseToChange(bill, "a transfer stays a 调拨单");
    }
}

/// What the other half of a transfer has in common with the changed one.
void Follow(StoredBill& other, const StoredBill& changed, const BillChanges& changes) {
    other.date = changed.date;
    other.month = changed.month;
    other.number = changed.number;
    other.subtype = changed.subtype;
    other.project = changed.project;
    Take(other.remarks, changes.remarks);
    if (changes.lines) other.lines = changed.lines;
}

}  // namespace

Corrected EditBill(const ConnectionPtr& book, BillFamily family, std::int32_t id, const BillChanges& changes,
                   const EntryOptions& options) {
    Transaction transaction(*book);
    BillResolver resolver(book, options);
    const BillPair before = ReadPair(book, family, id);
    CheckFields(before.bill, changes);
    CheckMayChange(before.bill, resolver);
    if (before.other) CheckMayChange(*before.other, resolver);

    BillPair after = before;
    std::vector<BillFault> faults;
    const NewBill entry = AsEntered(before, changes);
    resolver.Change(after.bill, entry, faults);
    if (!faults.empty()) throw BillsRefused(std::move(faults));
    after.bill.warehouse = changes.warehouse.value_or(before.bill.warehouse);
    if (family != BillFamily::Cost && IsNumberTaken(*book, after.bill, id, before.OtherId())) {
        RefuseToChange(before.bill, "month " + std::to_string(after.bill.month) + " has a " + after.bill.type + " " +
                                        after.bill.number + " already; give it another number");
    }
    if (after.other) Follow(*after.other, after.bill, changes);
    StockMoves moves;
    const auto write = [&](const StoredBill& was, const StoredBill& is) {
        WriteBillHeader(*book, is);
        ReplaceBillLines(*book, is);
        moves.Add(was, -1);
        moves.Add(is, 1, entry.key, entry.lines);
    };
    write(before.bill, after.bill);
    if (after.other) write(*before.other, *after.other);
    CheckStock(*book, moves, resolver, options);
    transaction.Commit();
    return {std::move(after.bill), before.OtherId()};
}

Corrected RemoveBill(const ConnectionPtr& book, BillFamily family, std::int32_t id, const EntryOptions& options) {
    Transaction transaction(*book);
    BillResolver resolver(book, options);
    CheckedTables checked(book);
    const BillPair pair = ReadPair(book, family, id);
    StockMoves moves;
    const auto remove = [&](const StoredBill& bill) {
        CheckMayChange(bill, resolver);
        if (bill.family == BillFamily::Cost) {
            RemoveCostBill(*book, bill.id);
        } else {
            checked.Ask([&](CTables& tables) { return tables.Del_单据(bill.id, SelectorOf(bill.family)); });
        }
        moves.Add(bill, -1, NameOfBill(bill));
    };
    remove(pair.bill);
    if (pair.other) remove(*pair.other);
    CheckStock(*book, moves, resolver, options);
    transaction.Commit();
    return {pair.bill, pair.OtherId()};
}

Corrected AuditBill(const ConnectionPtr& book, BillFamily family, std::int32_t id, const std::string& auditor,
                    Date date) {
    if (family == BillFamily::Cost) RefuseWith("cost bills have no auditor");
    if (auditor.empty()) RefuseWith("the auditor's name is empty");
    Transaction transaction(*book);
    CheckedTables checked(book);
    BillPair pair = ReadPair(book, family, id);
    const auto stamp = [&](const StoredBill& bill) {
        if (!bill.auditor.empty()) RefuseToChange(bill, "it is audited by " + bill.auditor + " already");
        checked.Do("the audit is not written", [&](CTables& tables) {
            return tables.BillAdulting(SelectorOf(bill.family), bill.id, Quoted(auditor), Variant(date));
        });
    };
    stamp(pair.bill);
    if (pair.other) stamp(*pair.other);
    transaction.Commit();
    pair.bill.auditor = auditor;
    pair.bill.audited = date;
    return {pair.bill, pair.OtherId()};
}

Corrected UndoAudit(const ConnectionPtr& book, BillFamily family, std::int32_t id) {
    if (family == BillFamily::Cost) RefuseWith("cost bills have no auditor");
    Transaction transaction(*book);
    BillPair pair = ReadPair(book, family, id);
    if (pair.bill.auditor.empty()) RefuseToChange(pair.bill, "it is not audited");
    const auto clear = [&](const StoredBill& bill) {
        book->Execute("Update " + TablesOf(bill.family).Headers() +
                      " Set 审核员='',审核日期=Null Where BillID=" + std::to_string(bill.id));
    };
    clear(pair.bill);
    if (pair.other) clear(*pair.other);
    transaction.Commit();
    pair.bill.auditor.clear();
    pair.bill.audited.reset();
    return {pair.bill, pair.OtherId()};
}

}  // namespace kpTables::bookkeeping
