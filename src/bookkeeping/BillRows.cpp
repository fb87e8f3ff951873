#include "bookkeeping/BillRows.h"

#include <array>
#include <string>
#include <string_view>

#include "kpTables/Convert.h"

namespace kpTables::bookkeeping {

namespace {

std::string OfBill(const BillKind& kind, std::int32_t id) {
    return " Where " + std::string(kind.key) + "=" + std::to_string(id);
}

void Set(Recordset& row, std::string_view column, const Variant& value) { row.Fields(column).SetValue(value); }

/// A type of another host's is listed with the plain ones.
const char* CodeOf(const std::string& type) {
    const BillType* known = FindBillType(type);
    return known ? known->code : kBillTypes[0].code;
}

/// The bill's number through the year: "R000012".
std::string SerialOf(BillFamily family, std::int32_t id) {
    return (family == BillFamily::Inbound ? "R" : "C") + Format(id, "000000");
}

void SetHeader(Recordset& row, const StoredBill& bill) {
    const auto parts = bill.date->ToParts();
    Set(row, "年份", parts.year);
    Set(row, "月份", parts.month);
    Set(row, "日子", parts.day);
    Set(row, "dpID", bill.warehouse);
    if (bill.family == BillFamily::Cost) return;
    Set(row, "单据类型", bill.type);
    Set(row, "类型", bill.subtype);
    Set(row, "单据编号", bill.number);
    Set(row, "BillType", CodeOf(bill.type));
    Set(row, "ksID", bill.partner);
    Set(row, "pjID", bill.project);
    Set(row, "录入员", bill.clerk);
    if (bill.entered) Set(row, "录入日期", *bill.entered);
    Set(row, "说明", bill.remarks);
}

void AddLines(Connection& book, const StoredBill& bill, std::int32_t id) {
    const BillKind& kind = TablesOf(bill.family);
    const auto rows = book.Open(kind.Lines(), SourceKind::Table);
    for (const StoredBillLine& line : bill.lines) {
        rows->AddNew();
        Set(*rows, kind.key, id);
        Set(*rows, "pdID", line.product);
        Set(*rows, "数量", line.quantity);
        if (bill.family == BillFamily::Cost) {
            Set(*rows, "单价", line.amounts.netPrice);
            Set(*rows, "金额", line.amounts.net);
        } else {
            Set(*rows, "dpID", bill.warehouse);
            Set(*rows, "仓库", bill.warehouse);
            Set(*rows, "单价", line.amounts.grossPrice);
            Set(*rows, "金额", line.amounts.gross);
            Set(*rows, "税额", line.amounts.tax);
            Set(*rows, "除税单价", line.amounts.netPrice);
            Set(*rows, "除税金额", line.amounts.net);
            Set(*rows, "经手人", line.handler);
            Set(*rows, "交接人", line.counterpart);
            Set(*rows, "包装", line.packing);
            Set(*rows, "货位", line.slot);
            Set(*rows, "期限", line.term);
        }
        rows->Update();
    }
    rows->Close();
}

}  // namespace

const BillKind& TablesOf(BillFamily family) noexcept { return kBillKinds[static_cast<std::size_t>(family)]; }

std::int32_t AddBillRows(Connection& book, const StoredBill& bill) {
    const BillKind& kind = TablesOf(bill.family);
    const auto rows = book.Open(kind.Headers(), SourceKind::Table);
    rows->AddNew();
    SetHeader(*rows, bill);
    if (bill.family != BillFamily::Cost) {
        Set(*rows, "审核员", "");
    }
    rows->Update();
    const std::int32_t id = CLng(rows->Fields(kind.key).Value());
    if (bill.family != BillFamily::Cost) {
        Set(*rows, "编号", SerialOf(bill.family, id));
        rows->Update();
    }
    rows->Close();
    AddLines(book, bill, id);
    return id;
}

void WriteBillHeader(Connection& book, const StoredBill& bill) {
    const BillKind& kind = TablesOf(bill.family);
    const auto rows = book.Open("Select * From " + kind.Headers() + OfBill(kind, bill.id), SourceKind::Text);
    rows->MoveFirst();
    SetHeader(*rows, bill);
    rows->Update();
    rows->Close();
}

void ReplaceBillLines(Connection& book, const StoredBill& bill) {
    const BillKind& kind = TablesOf(bill.family);
    book.Execute("Delete From " + kind.Lines() + OfBill(kind, bill.id));
    AddLines(book, bill, bill.id);
}

void RemoveCostBill(Connection& book, std::int32_t id) {
    for (const std::string& table : {kCost.Headers(), kCost.Lines()})
        book.Execute("Delete From " + table + OfBill(kCost, id));
}

}  // namespace kpTables::bookkeeping
