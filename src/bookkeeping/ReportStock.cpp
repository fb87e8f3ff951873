#include "kpTables/bookkeeping/ReportStock.h"

#include <string>
#include <utility>

#include "bookkeeping/OutboundGoods.h"
#include "kpTables/Convert.h"

namespace kpTables::bookkeeping {

namespace {

double FigureOf(const Variant& value) { return IsNumeric(value) ? CDbl(value) : 0; }
Currency MoneyOf(const Variant& value) { return IsNumeric(value) ? CCur(value) : Currency(); }

double Quotient(const Variant& amount, const Variant& quantity) {
    const double divisor = FigureOf(quantity);
    return divisor == 0 ? 0 : FigureOf(amount) / divisor;
}

/// Calls use with every product and its sums.
template <class Use>
void ForEachProduct(Connection& book, const std::string& text, Use use) {
    const auto rows = book.Execute(text);
    for (; !rows->Eof(); rows->MoveNext()) {
        const Variant product = rows->GetValue(0);
        if (IsNumeric(product)) use(CLng(product), rows->GetValue(1), rows->GetValue(2));
    }
}

Movement MovementOf(const Variant& quantity, const Variant& amount) {
    return {MoneyOf(quantity), CCur(Quotient(amount, quantity)), MoneyOf(amount)};
}

void Add(Movement& movement, const OutboundGoods& goods) {
    movement.quantity = movement.quantity + CCur(Variant(goods.quantity));
    movement.amount = movement.amount + goods.amount;
    movement.price = CCur(Quotient(Variant(movement.amount), Variant(movement.quantity)));
}

std::string InboundSums(const std::string& month, const std::string& warehouse) {
    return "Select Rec.pdID, Sum(Rec.数量) As 数量, Sum(Rec.除税金额) As 金额 From 入库记录 As Rec Inner Join 入库目录 As Lst "
           "On Rec.BillID = Lst.BillID Where Lst.月份=" +
           month + (warehouse.empty() ? "" : " And Lst.dpID=" + warehouse) + " Group by Rec.pdID";
}

std::string ConditionOf(const StockScope& scope) {
    return "月份=" + std::to_string(scope.month) +
           (scope.warehouse ? " And dpID=" + std::to_string(*scope.warehouse) : "");
}

std::map<std::int32_t, Movement> OutboundByProduct(Connection& book, Valuation valuation, const std::string& here) {
    std::map<std::int32_t, Movement> products;
    for (const auto& goods : OutboundAt(book, valuation, " Where " + here, SumsOf::Months)) {
        if (goods.product) Add(products[*goods.product], goods);
    }
    return products;
}

}  // namespace

double StockFigures::Quantity() const {
    return (CCur(openingQuantity) + inbound.quantity - outbound.quantity).ToDouble();
}

double StockFigures::Price() const {
    const double quantity = Quantity();
    return quantity == 0 ? 0 : Amount().ToDouble() / quantity;
}

StockFigures StockOf(CTables& tables, WatchedConnection& connection, const StockScope& scope, std::int32_t product) {
    const auto warehouse = scope.warehouse.value_or(0);
    const auto month = scope.month;
    connection.ForgetFailures();
    StockFigures figures;
    figures.openingQuantity = tables.Get上期库存(warehouse, product, month, "数量");
    figures.openingPrice = tables.Get上期库存(warehouse, product, month, "单价");
    figures.openingAmount = CCur(tables.Get上期库存(warehouse, product, month, "金额"));
    const auto inbound = [&](const char* what) { return tables.Get商品入库(warehouse, product, month, what); };
    const auto outbound = [&](const char* what) { return tables.Get商品出库(warehouse, product, month, what); };
    figures.inbound = {inbound("数量"), inbound("单价"), inbound("金额")};
    figures.outbound = {outbound("数量"), outbound("单价"), outbound("金额")};
    if (scope.valuation == Valuation::CostBills) {
        // The method for costs does not say whether there are any.
        const Movement valued = OutboundByProduct(connection, Valuation::CostBills, ConditionOf(scope))[product];
        figures.outbound.price = valued.price;
        figures.outbound.amount = valued.amount;
    }
    // The methods return 0 after an error.
    if (const auto* error = connection.LastError()) throw *error;
    return figures;
}

std::map<std::int32_t, StockFigures> StockByProduct(Connection& book, const StockScope& scope) {
    const std::string month = std::to_string(scope.month);
    const std::string warehouse = scope.warehouse ? std::to_string(*scope.warehouse) : "";
    const std::string here = ConditionOf(scope);
    std::map<std::int32_t, StockFigures> products;
    ForEachProduct(book,
                   "Select pdID, Sum(上期库存数量) As 数量, Sum(上期库存金额) As 金额 From 仓库余额表 Where " + here +
                       " Group by pdID",
                   [&](std::int32_t product, const Variant& quantity, const Variant& amount) {
                       auto& figures = products[product];
                       figures.openingQuantity = FigureOf(quantity);
                       figures.openingPrice = Quotient(amount, quantity);
                       figures.openingAmount = MoneyOf(amount);
                   });
    ForEachProduct(book, InboundSums(month, warehouse),
                   [&](std::int32_t product, const Variant& quantity, const Variant& amount) {
                       products[product].inbound = MovementOf(quantity, amount);
                   });
    for (const auto& [product, movement] : OutboundByProduct(book, Valuation::OutboundBills, here)) {
        products[product].outbound = movement;
    }
    if (scope.valuation == Valuation::OutboundBills) return products;
    // The quantity stays that of the outbound bills.
    for (const auto& [product, movement] : OutboundByProduct(book, scope.valuation, here)) {
        products[product].outbound.price = movement.price;
        products[product].outbound.amount = movement.amount;
    }
    return products;
}

std::vector<StockValue> StockValues(Connection& book, Valuation valuation) {
    std::map<std::pair<std::int32_t, std::int32_t>, Currency> amounts;
    const auto forEach = [&](const std::string& query, auto use) {
        for (const auto rows = book.Execute(query); !rows->Eof(); rows->MoveNext()) {
            const Variant warehouse = rows->GetValue(0);
            const Variant month = rows->GetValue(1);
            if (IsNumeric(warehouse) && IsNumeric(month)) {
                use(std::pair(CLng(warehouse), CLng(month)), MoneyOf(rows->GetValue(2)));
            }
        }
    };
    forEach("Select dpID,月份,Sum(上期库存金额) As 金额 From 仓库余额表 Group by dpID,月份",
            [&](auto place, Currency amount) { amounts[place] = amount; });
    const auto add = [&](std::pair<std::int32_t, std::int32_t> place, Currency amount) {
        const auto found = amounts.find(place);
        if (found != amounts.end()) found->second = found->second + amount;
    };
    forEach(
        "Select Lst.dpID,Lst.月份,Sum(Rec.除税金额) As 金额 From 入库目录 As Lst Inner Join 入库记录 As Rec "
        "On Lst.BillID=Rec.BillID Group by Lst.dpID,Lst.月份",
        add);
    for (const auto& goods : OutboundAt(book, valuation, "", SumsOf::Months)) {
        add({goods.warehouse, goods.month}, -goods.amount);
    }
    std::vector<StockValue> values;
    values.reserve(amounts.size());
    for (const auto& [place, amount] : amounts) {
        values.push_back({place.first, static_cast<std::int16_t>(place.second), amount});
    }
    return values;
}

}  // namespace kpTables::bookkeeping
