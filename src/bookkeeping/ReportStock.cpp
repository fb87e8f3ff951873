#include "kpTables/bookkeeping/ReportStock.h"

#include <string>
#include <utility>

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

std::string BillSums(const std::string& kind, const std::string& month, const std::string& warehouse) {
    return "Select Rec.pdID, Sum(Rec.数量) As 数量, Sum(Rec.除税金额) As 金额 From " + kind +
           "记录 As Rec Inner Join " + kind + "目录 As Lst On Rec.BillID = Lst.BillID Where Lst.月份=" + month +
           (warehouse.empty() ? "" : " And Lst.dpID=" + warehouse) + " Group by Rec.pdID";
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
    const bool atCost = scope.valuation == Valuation::CostBills;
    connection.ForgetFailures();
    StockFigures figures;
    figures.openingQuantity = tables.Get上期库存(warehouse, product, month, "数量");
    figures.openingPrice = tables.Get上期库存(warehouse, product, month, "单价");
    figures.openingAmount = CCur(tables.Get上期库存(warehouse, product, month, "金额"));
    const auto inbound = [&](const char* what) { return tables.Get商品入库(warehouse, product, month, what); };
    const auto outbound = [&](const char* what) { return tables.Get商品出库(warehouse, product, month, what); };
    const auto cost = [&](const char* what) {
        return tables.Get商品成本(warehouse, product, std::to_string(month), what);
    };
    figures.inbound = {inbound("数量"), inbound("单价"), inbound("金额")};
    figures.outbound.quantity = outbound("数量");
    figures.outbound.price = atCost ? cost("单价") : outbound("单价");
    figures.outbound.amount = atCost ? cost("金额") : outbound("金额");
    // The methods return 0 after an error.
    if (const auto* error = connection.LastError()) throw *error;
    return figures;
}

std::map<std::int32_t, StockFigures> StockByProduct(Connection& book, const StockScope& scope) {
    const bool atCost = scope.valuation == Valuation::CostBills;
    const std::string month = std::to_string(scope.month);
    const std::string warehouse = scope.warehouse ? std::to_string(*scope.warehouse) : "";
    const std::string here = "月份=" + month + (scope.warehouse ? " And dpID=" + warehouse : "");
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
    ForEachProduct(book, BillSums("入库", month, warehouse),
                   [&](std::int32_t product, const Variant& quantity, const Variant& amount) {
                       products[product].inbound = MovementOf(quantity, amount);
                   });
    ForEachProduct(book, BillSums("出库", month, warehouse),
                   [&](std::int32_t product, const Variant& quantity, const Variant& amount) {
                       auto& outbound = products[product].outbound;
                       if (atCost) {
                           outbound.quantity = MoneyOf(quantity);
                       } else {
                           outbound = MovementOf(quantity, amount);
                       }
                   });
    if (!atCost) return products;
    ForEachProduct(book,
                   "Select pdID, Sum(数量) As 数量, Sum(金额) As 金额 From 成本记录 Where CostID In "
                   "(Select CostID From 成本目录 Where " +
                       here + ") Group by pdID",
                   [&](std::int32_t product, const Variant& quantity, const Variant& amount) {
                       const Movement cost = MovementOf(quantity, amount);
                       products[product].outbound.price = cost.price;
                       products[product].outbound.amount = cost.amount;
                   });
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
    const auto add = [&](const std::string& kind, const std::string& key, const std::string& column, bool isInbound) {
        forEach("Select Lst.dpID,Lst.月份,Sum(Rec." + column + ") As 金额 From " + kind + "目录 As Lst Inner Join " +
                    kind + "记录 As Rec On Lst." + key + "=Rec." + key + " Group by Lst.dpID,Lst.月份",
                [&](auto place, Currency amount) {
                    const auto found = amounts.find(place);
                    if (found == amounts.end()) return;
                    found->second = isInbound ? found->second + amount : found->second - amount;
                });
    };
    add("入库", "BillID", "除税金额", true);
    if (valuation == Valuation::CostBills) {
        add("成本", "CostID", "金额", false);
    } else {
        add("出库", "BillID", "除税金额", false);
    }
    std::vector<StockValue> values;
    values.reserve(amounts.size());
    for (const auto& [place, amount] : amounts) {
        values.push_back({place.first, static_cast<std::int16_t>(place.second), amount});
    }
    return values;
}

}  // namespace kpTables::bookkeeping
