#include "kpTables/bookkeeping/ReportDays.h"

#include <map>
#include <string>

#include "bookkeeping/OutboundGoods.h"
#include "kpTables/Convert.h"

namespace kpTables::bookkeeping {

namespace {

using DaysInOrder = std::map<std::int32_t, DayFigures>;

std::int32_t DayOf(const Variant& value) { return value.IsNull() ? 0 : CLng(value); }

/// Replaces the outbound amounts with those at cost.
void ValueAtCost(Connection& book, std::int16_t month, std::int32_t warehouse, DaysInOrder& days) {
    for (auto& [day, figures] : days) figures.outAmount = Currency();
    const std::string here =
        " Where 月份=" + std::to_string(month) + (warehouse > 0 ? " And dpID=" + std::to_string(warehouse) : "");
    for (const auto& goods : OutboundAt(book, Valuation::CostBills, here, SumsOf::Days)) {
        Currency& amount = days[goods.day].outAmount;
        amount = amount + goods.amount;
    }
}

}  // namespace

std::vector<DayFigures> DailyFigures(CTables& tables, std::int16_t month, std::int32_t warehouse, Valuation valuation) {
    DaysInOrder days;
    const auto rows = tables.rs日报列表(month, warehouse);
    // The first row of the method has the month's opening stock, whichever day it is of.
    const bool isEmpty = rows->Eof();
    double quantity =
        isEmpty ? tables.Get上期库存(warehouse, 0, month, "数量") : CDbl(rows->Fields("期初数量").Value());
    Currency amount =
        CCur(isEmpty ? Variant(tables.Get上期库存(warehouse, 0, month, "金额")) : rows->Fields("期初金额").Value());
    for (; !rows->Eof(); rows->MoveNext()) {
        DayFigures& day = days[DayOf(rows->Fields("日子").Value())];
        day.inQuantity += CDbl(rows->Fields("入库数量").Value());
        day.inAmount = day.inAmount + CCur(rows->Fields("入库金额").Value());
        day.outQuantity += CDbl(rows->Fields("出库数量").Value());
        day.outAmount = day.outAmount + CCur(rows->Fields("出库金额").Value());
    }
    if (valuation == Valuation::CostBills) ValueAtCost(*tables.Cnn(), month, warehouse, days);
    std::vector<DayFigures> list;
    list.reserve(days.size());
    for (auto& [number, day] : days) {
        day.day = number;
        day.openingQuantity = quantity;
        day.openingAmount = amount;
        day.quantity = quantity = quantity + day.inQuantity - day.outQuantity;
        day.amount = amount = amount + day.inAmount - day.outAmount;
        list.push_back(day);
    }
    return list;
}

}  // namespace kpTables::bookkeeping
