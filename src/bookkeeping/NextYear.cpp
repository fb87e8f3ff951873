#include "kpTables/bookkeeping/NextYear.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "bookkeeping/BalanceRows.h"
#include "bookkeeping/BillKinds.h"
#include "bookkeeping/OwnTables.h"
#include "bookkeeping/Refusal.h"
#include "bookkeeping/Setup.h"
#include "bookkeeping/Warehouses.h"
#include "kpTables/Convert.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/BookYear.h"
#include "kpTables/bookkeeping/ClosedMonths.h"
#include "kpTables/bookkeeping/NewBook.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

constexpr const char* kTablesThatComeAlong[] = {
    "仓库设置", "厂商分类", "厂商资料",   "客户分类", "客户资料", "项目分类", "项目设置", "部门分类", "雇员资料",
    "商品分类", "商品设置", "收付款方式", "系统选项", "AccInfo",  "操作员",   "Header",   "History"};

/// Every warehouse that the book knows of, also one that is only named by rows.
std::map<std::int32_t, std::string> WarehousesOf(Connection& book) {
    std::map<std::int32_t, std::string> names;
    std::vector<std::string> tables{"仓库余额表"};
    for (const BillKind& kind : kBillKinds) tables.push_back(kind.Headers());
    for (const std::string& table : tables) {
        const auto rows = book.Execute("Select Distinct dpID From " + table + " Where dpID Is Not Null");
        for (; !rows->Eof(); rows->MoveNext()) {
            const std::int32_t id = CLng(rows->GetValue(0));
            names[id] = Message("warehouse {1}", id);
        }
    }
    const auto rows = book.Execute("Select dpID,仓库名称 From 仓库设置");
    for (; !rows->Eof(); rows->MoveNext()) names[CLng(rows->GetValue(0))] = Text(rows->GetValue(1));
    return names;
}

void RequireClosedYear(Connection& book) {
    std::string open;
    for (const auto& [id, name] : WarehousesOf(book)) {
        const bool used = BalanceRows(book, id).FirstUsedMonth(0, kLastMonth + 1) > 0;
        if (used && ClosedThrough(book, id) < kLastMonth) open += (open.empty() ? "" : ", ") + name;
    }
    if (!open.empty()) RefuseWith(Message("month 12 is open in {1}; close it first", open));
}

void RequireSingleRows(Connection& book) {
    const auto rows =
        book.Execute("Select TOP 1 dpID,pdID From 仓库余额表 Where 月份=12 Group by dpID,pdID Having Count(*)>1");
    if (rows->Eof()) return;
    RefuseWith(
        Message("month 12 has more than one balance row of product {1} in warehouse {2}; remove the others first",
                Text(rows->GetValue(1)), Text(rows->GetValue(0))));
}

void CopyRows(Book& from, Book& next, const std::string& table) {
    const auto rows = from.Execute("Select * From [" + table + "]");
    std::vector<std::string> columns;
    for (int column = 0; column < rows->FieldCount(); ++column) columns.push_back(rows->FieldAt(column).name);
    const auto appender = next.AppendTo(table, columns);
    std::vector<Variant> values(columns.size());
    for (; !rows->Eof(); rows->MoveNext()) {
        for (std::size_t column = 0; column < values.size(); ++column)
            values[column] = rows->GetValue(static_cast<int>(column));
        appender->Append(values);
    }
}

void CopyTables(Book& from, Book& next, NextYear& result) {
    const auto old = from.Tables();
    const auto fresh = next.Tables();
    for (const TableInfo& table : old) {
        const TableInfo* to = FindTable(fresh, table.name);
        if (!to) result.ownTables.push_back(table.name);
        if (!to || !std::ranges::count(kTablesThatComeAlong, table.name)) continue;
        for (std::string& column : TakeOwnColumns(table, *to, next)) result.ownColumns.push_back(std::move(column));
        CopyRows(from, next, table.name);
    }
}

/// The closing stock of month 12, to the last bit.
std::int32_t CopyStock(Book& from, Book& next, std::int32_t year) {
    const auto rows = from.Execute(
        "Select pdID,dpID,本期库存单价,本期库存数量,本期库存金额 From 仓库余额表 Where 月份=12 And (本期库存数量<>0 Or "
        "本期库存金额<>0 Or 累计入库数量<>0 Or 累计入库金额<>0 Or 累计出库数量<>0 Or 累计出库金额<>0)");
    const auto appender =
        next.AppendTo("仓库余额表", {"年份", "月份", "pdID", "dpID", "上期库存单价", "上期库存数量", "上期库存金额",
                                     "本期库存单价", "本期库存数量", "本期库存金额", "备注"});
    const Variant note = Date::FromYearMonthDay(year, 1, 1).ToText();
    for (; !rows->Eof(); rows->MoveNext()) {
        const Variant price = rows->GetValue(2);
        const Variant quantity = rows->GetValue(3);
        const Variant amount = rows->GetValue(4);
        appender->Append({static_cast<std::int16_t>(year), std::int16_t{1}, rows->GetValue(0), rows->GetValue(1), price,
                          quantity, amount, price, quantity, amount, note});
    }
    return rows->RecordCount();
}

void OpenWarehouses(Setup& setup, std::int32_t year) {
    const auto rows = setup.Tables().rs仓库列表();
    for (; !rows->Eof(); rows->MoveNext())
        MarkClosedThrough(setup.Tables(), CLng(rows->Fields("dpID").Value()), year, 0, false);
}

}  // namespace

NextYear BeginNextYear(Book& from, const BookPtr& next) {
    // No month is reopened meanwhile, and all is read of one moment.
    const Transaction reading(from);
    RequireClosedYear(from);
    RequireSingleRows(from);
    NextYear result;
    const std::int32_t year = BookYear(from);
    if (year == 0) RefuseWith(Message("the book has no year: it has neither balance rows nor 建帐日期"));
    result.year = year + 1;
    if (result.year > kLastYear) RefuseWith(Message("a book cannot have the year {1}", result.year));

    Transaction transaction(*next);
    CopyTables(from, *next, result);
    result.openingRows = CopyStock(from, *next, result.year);
    Setup setup(next);
    setup.StoreDates(result.year, 1);
    OpenWarehouses(setup, result.year);
    transaction.Commit();
    return result;
}

}  // namespace kpTables::bookkeeping
