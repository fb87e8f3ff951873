#include "kpTables/bookkeeping/BillEntry.h"

#include <utility>

#include "bookkeeping/BillRows.h"
#include "bookkeeping/BillRun.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/BillNumbers.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// The first fault, and how many more there are.
std::string Summary(const std::vector<BillFault>& faults) {
    if (faults.empty()) return Message("nothing was entered");
    const BillFault& first = faults.front();
    const std::string reason = first.column.empty() ? first.reason : first.column + ": " + first.reason;
    const std::string text = first.bill.empty() ? reason : Message("bill {1}: {2}", first.bill, reason);
    return faults.size() > 1 ? Message("{1} (and {2} more)", text, faults.size() - 1) : text;
}

/// The inbound half of a transfer.
StoredBill InboundHalf(const StoredBill& outbound, const NewBill& bill) {
    StoredBill half = outbound;
    half.family = BillFamily::Inbound;
    half.warehouse = bill.toWarehouse;
    return half;
}

}  // namespace

BillsRefused::BillsRefused(std::vector<BillFault> faults)
    : Error(static_cast<std::int32_t>(ErrorNumber::InvalidCall), Summary(faults)), faults_(std::move(faults)) {}

BillRun::BillRun(const ConnectionPtr& book, const EntryOptions& options)
    : book_(book), options_(options), resolver_(book, options) {}

void BillRun::Enter(const NewBill& bill) {
    auto stored = resolver_.Resolve(bill, faults_);
    if (!stored) return;
    stored->entered = options_.today;
    if (stored->family != BillFamily::Cost && stored->number.empty()) {
        stored->number = NextBillNumber(book_, *stored);
    } else if (stored->family != BillFamily::Cost && IsNumberTaken(*book_, *stored)) {
        faults_.push_back({bill.key, bill.lines.front().row, "单据编号",
                           Message("month {1} has a {2} {3} already", stored->month, stored->type, stored->number)});
        return;
    }
    std::optional<StoredBill> inbound;
    if (bill.kind == EntryKind::Transfer) {
        inbound = InboundHalf(*stored, bill);
        if (bill.remarks.empty()) {
            stored->remarks = "调往" + resolver_.WarehouseName(bill.toWarehouse);
            inbound->remarks = "由" + resolver_.WarehouseName(bill.warehouse) + "调入";
        }
    }
    stored->id = AddBillRows(*book_, *stored);
    moves_.Add(*stored, 1, bill.key, bill.lines);
    if (inbound) {
        inbound->id = AddBillRows(*book_, *inbound);
        moves_.Add(*inbound, 1, bill.key, bill.lines);
    }
    entered_.push_back({bill.key, stored->id, inbound ? inbound->id : 0, std::move(*stored)});
}

std::vector<EnteredBill> BillRun::Finish() {
    if (!options_.allowNegativeStock) moves_.Check(*book_, resolver_, faults_);
    if (!faults_.empty()) throw BillsRefused(std::move(faults_));
    return std::move(entered_);
}

std::vector<EnteredBill> EnterBills(const ConnectionPtr& book, const std::vector<NewBill>& bills,
                                    const EntryOptions& options) {
    Transaction transaction(*book);
    BillRun run(book, options);
    for (const NewBill& bill : bills) run.Enter(bill);
    auto entered = run.Finish();
    transaction.Commit();
    return entered;
}

}  // namespace kpTables::bookkeeping
