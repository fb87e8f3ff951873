#include "bookkeeping/BalanceRows.h"

#include <algorithm>

#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"
#include "kpTables/bookkeeping/ClosedMonths.h"

namespace kpTables::bookkeeping {

namespace {

/// A bill's line belongs to the warehouse of its header: the closing counts it there.
std::string LinesOf(const BillKind& kind, std::int32_t warehouse, std::int32_t month) {
    const std::string key = kind.key;
    return "From " + kind.Lines() + " Where " + key + " In (Select " + key + " From " + kind.Headers() +
           OfMonth(warehouse, month) + ")";
}

}  // namespace

std::int32_t BalanceRows::Count(std::int32_t month) const {
    return NumberOf(book_, "Select Count(*) As n From 仓库余额表" + OfMonth(warehouse_, month));
}

std::int32_t BalanceRows::Year(std::int32_t month) const {
    return NumberOf(book_, "Select Max(年份) As y From 仓库余额表" + OfMonth(warehouse_, month));
}

std::int16_t BalanceRows::FirstUsedMonth(std::int32_t after, std::int32_t before) const {
    std::int32_t first = 0;
    std::vector<std::string> tables{"仓库余额表"};
    for (const BillKind& kind : kBillKinds) tables.push_back(kind.Headers());
    for (const std::string& table : tables) {
        const std::int32_t month =
            NumberOf(book_, "Select Min(月份) As m From " + table + " Where dpID=" + std::to_string(warehouse_) +
                                " And 月份>" + std::to_string(after) + " And 月份<" + std::to_string(before));
        if (month > 0 && (first == 0 || month < first)) first = month;
    }
    return static_cast<std::int16_t>(first);
}

std::vector<std::int32_t> BalanceRows::Missing(const BillKind& kind, std::int32_t month) const {
    const auto rows = book_.Execute("Select Distinct pdID " + LinesOf(kind, warehouse_, month) +
                                    " And pdID Is Not Null And pdID Not In (Select pdID From 仓库余额表" +
                                    OfMonth(warehouse_, month) + " And pdID Is Not Null)");
    std::vector<std::int32_t> products;
    for (; !rows->Eof(); rows->MoveNext()) products.push_back(CLng(rows->GetValue(0)));
    return products;
}

std::int32_t BalanceRows::BillsYear(std::int32_t month) const {
    std::int32_t year = 0;
    for (const BillKind& kind : kBillKinds) {
        const std::int32_t latest =
            NumberOf(book_, "Select Max(年份) As y From " + kind.Headers() + OfMonth(warehouse_, month));
        year = std::max(year, latest);
    }
    return year;
}

void BalanceRows::Add(const std::vector<std::int32_t>& products, std::int32_t year, std::int32_t month) const {
    const std::string keys = "Insert Into 仓库余额表 (年份,月份,pdID,dpID) Values (" + std::to_string(year) + "," +
                             std::to_string(month) + ",";
    for (const std::int32_t product : products)
        book_.Execute(keys + std::to_string(product) + "," + std::to_string(warehouse_) + ")");
}

bool BalanceRows::HasNext(std::int32_t month) const {
    return month < kLastMonth && HasRows(book_, "Select TOP 1 pdID From 仓库余额表" + OfMonth(warehouse_, month + 1));
}

/// " From 仓库余额表 Where ..." of the next month's rows of the month's products.
std::string BalanceRows::NextRowsOf(std::int32_t month) const {
    return " From 仓库余额表" + OfMonth(warehouse_, month + 1) + " And pdID In (Select pdID From 仓库余额表" +
           OfMonth(warehouse_, month) + ")";
}

std::int32_t BalanceRows::CarriedBefore(std::int32_t month) const {
    if (!HasNext(month)) return 0;
    return NumberOf(book_, "Select Count(*) As n" + NextRowsOf(month) + " And (上期库存数量<>0 Or 上期库存金额<>0)");
}

void BalanceRows::RemoveCarried(std::int32_t month) const {
    if (HasNext(month)) book_.Execute("Delete" + NextRowsOf(month));
}

void BalanceRows::Reset(std::int32_t month) const {
    book_.Execute(
        "Update 仓库余额表 Set 本期入库单价=0,本期入库数量=0,本期入库金额=0,累计入库数量=0,累计入库金额=0,"
        "本期出库单价=0,本期出库数量=0,本期出库金额=0,累计出库数量=0,累计出库金额=0,"
        "本期库存单价=上期库存单价,本期库存数量=上期库存数量,本期库存金额=上期库存金额" +
        OfMonth(warehouse_, month));
}

}  // namespace kpTables::bookkeeping
