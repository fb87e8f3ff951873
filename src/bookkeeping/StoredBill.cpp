#include "kpTables/bookkeeping/StoredBill.h"

#include <algorithm>

#include "bookkeeping/BillRows.h"
#include "bookkeeping/CheckedTables.h"
#include "bookkeeping/Query.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/Quoted.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

std::int32_t WholeIn(Recordset& row, const char* column) {
    const Variant value = row.Fields(column).Value();
    return value.IsNull() ? 0 : CLng(value);
}

std::string TextIn(Recordset& row, const char* column) { return std::string(Trim(Text(row.Fields(column).Value()))); }

Currency MoneyIn(Recordset& row, const char* column) {
    const Variant value = row.Fields(column).Value();
    return value.IsNull() ? Currency() : CCur(value);
}

double NumberIn(Recordset& row, const char* column) {
    const Variant value = row.Fields(column).Value();
    return value.IsNull() ? 0 : CDbl(value);
}

std::optional<Date> DateIn(Recordset& row, const char* column) {
    const Variant value = row.Fields(column).Value();
    if (value.IsNull()) return std::nullopt;
    return CDate(value);
}

const char* NounOf(BillFamily family) {
    if (family == BillFamily::Inbound) return Translated("inbound bill");
    return family == BillFamily::Outbound ? Translated("outbound bill") : Translated("cost bill");
}

std::string HeaderQuery(BillFamily family, const std::string& condition) {
    const BillKind& kind = TablesOf(family);
    return "Select * From " + kind.Headers() + " Where " + condition + " Order by " + kind.key;
}

std::string IdCondition(BillFamily family, std::int32_t id) {
    return std::string(TablesOf(family).key) + "=" + std::to_string(id);
}

StoredBill HeaderOf(Recordset& row, BillFamily family) {
    StoredBill bill;
    bill.family = family;
    bill.id = CLng(row.Fields(TablesOf(family).key).Value());
    bill.month = WholeIn(row, "月份");
    bill.date = Date::FromParts({WholeIn(row, "年份"), bill.month, WholeIn(row, "日子"), 0, 0, 0});
    bill.warehouse = WholeIn(row, "dpID");
    if (family == BillFamily::Cost) return bill;
    bill.partner = WholeIn(row, "ksID");
    bill.project = WholeIn(row, "pjID");
    bill.type = TextIn(row, "单据类型");
    bill.subtype = TextIn(row, "类型");
    bill.number = TextIn(row, "单据编号");
    bill.clerk = TextIn(row, "录入员");
    bill.entered = DateIn(row, "录入日期");
    bill.auditor = TextIn(row, "审核员");
    bill.audited = DateIn(row, "审核日期");
    bill.remarks = TextIn(row, "说明");
    return bill;
}

StoredBillLine LineOf(Recordset& row, BillFamily family) {
    StoredBillLine line;
    line.product = WholeIn(row, "pdID");
    line.quantity = NumberIn(row, "数量");
    if (family == BillFamily::Cost) {
        line.amounts.netPrice = MoneyIn(row, "单价");
        line.amounts.net = MoneyIn(row, "金额");
        return line;
    }
    line.amounts = {MoneyIn(row, "除税单价"), MoneyIn(row, "单价"), MoneyIn(row, "除税金额"), MoneyIn(row, "税额"),
                    MoneyIn(row, "金额")};
    line.handler = TextIn(row, "经手人");
    line.counterpart = TextIn(row, "交接人");
    line.packing = TextIn(row, "包装");
    line.slot = TextIn(row, "货位");
    line.term = NumberIn(row, "期限");
    return line;
}

/// A text that is an id; nothing for others.
std::optional<std::int32_t> IdIn(std::string_view text) {
    constexpr std::size_t kMostDigits = 9;
    const bool isDigits = std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
    if (text.empty() || text.size() > kMostDigits || !isDigits) return std::nullopt;
    return static_cast<std::int32_t>(std::stol(std::string(text)));
}

/// "id:3 (2026-1-5 入库单 RK1-01-0001)"
std::string CandidateText(const StoredBill& bill) {
    return "id:" + std::to_string(bill.id) + " (" + (bill.date ? bill.date->ToText() : Message("no date")) + " " +
           bill.type + " " + bill.number + ")";
}

std::vector<StoredBill> HeadersWith(Connection& book, BillFamily family, const std::string& condition) {
    std::vector<StoredBill> bills;
    const auto rows = book.Execute(HeaderQuery(family, condition));
    for (; !rows->Eof(); rows->MoveNext()) bills.push_back(HeaderOf(*rows, family));
    return bills;
}

}  // namespace

const char* SelectorOf(BillFamily family) noexcept { return TablesOf(family).name; }

StoredBill ReadBill(Connection& book, BillFamily family, std::int32_t id) {
    const auto headers = HeadersWith(book, family, IdCondition(family, id));
    if (headers.empty()) RefuseWith(Message("the book has no {1} {2}", NounOf(family), id));
    StoredBill bill = headers.front();
    const auto rows = book.Execute("Select * From " + TablesOf(family).Lines() + " Where " + IdCondition(family, id));
    for (; !rows->Eof(); rows->MoveNext()) bill.lines.push_back(LineOf(*rows, family));
    return bill;
}

std::int32_t FindBill(Connection& book, BillFamily family, const std::string& text, std::int16_t month) {
    constexpr std::string_view kById = "id:";
    const bool byId = text.starts_with(kById);
    const auto id = IdIn(byId ? std::string_view(text).substr(kById.size()) : std::string_view(text));
    std::vector<StoredBill> found;
    if (!byId && family != BillFamily::Cost) {
        const std::string ofMonth = month == 0 ? "" : " And 月份=" + std::to_string(month);
        found = HeadersWith(book, family, "单据编号='" + Quoted(text) + "'" + ofMonth);
    }
    if (id) {
        for (StoredBill& bill : HeadersWith(book, family, IdCondition(family, *id))) {
            const bool isKnown = std::ranges::any_of(found, [&](const auto& other) { return other.id == bill.id; });
            const bool isOfMonth = byId || month == 0 || bill.month == month;
            if (!isKnown && isOfMonth) found.push_back(std::move(bill));
        }
    }
    if (found.empty() && (month == 0 || byId)) RefuseWith(Message("the book has no {1} {2}", NounOf(family), text));
    if (found.empty()) RefuseWith(Message("the book has no {1} {2} in month {3}", NounOf(family), text, month));
    if (found.size() == 1) return found.front().id;
    std::string candidates;
    for (const StoredBill& bill : found) candidates += (candidates.empty() ? "" : ", ") + CandidateText(bill);
    RefuseWith(
        Message("{1} may be any of {2} {3}s: {4}; name one as id:N", text, found.size(), NounOf(family), candidates));
}

std::int32_t CounterpartOf(const ConnectionPtr& book, const StoredBill& bill) {
    if (!bill.IsTransfer() || bill.family == BillFamily::Cost) return 0;
    const BillFamily other = OtherDirection(bill.family);
    const std::int32_t halves = NumberOf(
        *book, "Select Count(*) As n From " + TablesOf(other).Headers() + " Where 月份=" + std::to_string(bill.month) +
                   " And 单据类型='" + std::string(kTransferType) + "' And 单据编号='" + Quoted(bill.number) + "'");
    if (halves > 1) {
        RefuseWith(Message(
            "the other half of the transfer {1} may be any of {2} bills of month {3}: give them different numbers first",
            bill.number, halves, bill.month));
    }
    if (halves == 0) return 0;
    return CheckedTables(book).Ask(
        [&](CTables& tables) { return tables.GetShiftID(bill.id, SelectorOf(bill.family)); });
}

BillTotals TotalsOf(const StoredBill& bill) {
    BillTotals totals;
    for (const StoredBillLine& line : bill.lines) {
        totals.quantity += line.quantity;
        totals.net = totals.net + line.amounts.net;
        totals.tax = totals.tax + line.amounts.tax;
        totals.gross = totals.gross + line.amounts.gross;
    }
    return totals;
}

}  // namespace kpTables::bookkeeping
