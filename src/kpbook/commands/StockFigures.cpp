#include "kpbook/commands/StockFigures.h"

#include <string>

#include "kpTables/Convert.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

namespace {

double Number(const Variant& value) { return IsNumeric(value) ? CDbl(value) : 0; }
Currency Money(const Variant& value) { return IsNumeric(value) ? CCur(value) : Currency(); }

double Quotient(const Variant& amount, const Variant& quantity) {
    const double divisor = Number(quantity);
    return divisor == 0 ? 0 : Number(amount) / divisor;
}

/// Calls use with every product and its sums.
template <class Use>
void ForEachProduct(Workspace& workspace, const std::string& text, Use use) {
    const auto rows = workspace.connection->Execute(text);
    for (; !rows->Eof(); rows->MoveNext()) {
        const Variant product = rows->GetValue(0);
        if (IsNumeric(product)) use(CLng(product), rows->GetValue(1), rows->GetValue(2));
    }
}

Movement MovementOf(const Variant& quantity, const Variant& amount) {
    return {Money(quantity), CCur(Quotient(amount, quantity)), Money(amount)};
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

StockFigures FiguresOf(Workspace& workspace, const StockOptions& options, std::int32_t product) {
    auto& tables = workspace.tables;
    const auto warehouse = options.warehouse.value_or(0);
    const auto month = options.month;
    workspace.connection->ForgetFailures();
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
    figures.outbound.price = options.costUsed ? cost("单价") : outbound("单价");
    figures.outbound.amount = options.costUsed ? cost("金额") : outbound("金额");
    // The methods return 0 after an error.
    if (const auto* error = workspace.connection->LastError()) throw *error;
    return figures;
}

std::map<std::int32_t, StockFigures> FiguresByProduct(Workspace& workspace, const StockOptions& options) {
    const std::string month = std::to_string(options.month);
    const std::string warehouse = options.warehouse ? std::to_string(*options.warehouse) : "";
    const std::string here = "月份=" + month + (options.warehouse ? " And dpID=" + warehouse : "");
    std::map<std::int32_t, StockFigures> products;
    ForEachProduct(workspace,
                   "Select pdID, Sum(上期库存数量) As 数量, Sum(上期库存金额) As 金额 From 仓库余额表 Where " + here +
                       " Group by pdID",
                   [&](std::int32_t product, const Variant& quantity, const Variant& amount) {
                       auto& figures = products[product];
                       figures.openingQuantity = Number(quantity);
                       figures.openingPrice = Quotient(amount, quantity);
                       figures.openingAmount = Money(amount);
                   });
    ForEachProduct(workspace, BillSums("入库", month, warehouse),
                   [&](std::int32_t product, const Variant& quantity, const Variant& amount) {
                       products[product].inbound = MovementOf(quantity, amount);
                   });
    ForEachProduct(workspace, BillSums("出库", month, warehouse),
                   [&](std::int32_t product, const Variant& quantity, const Variant& amount) {
                       auto& outbound = products[product].outbound;
                       if (options.costUsed) {
                           outbound.quantity = Money(quantity);
                       } else {
                           outbound = MovementOf(quantity, amount);
                       }
                   });
    if (!options.costUsed) return products;
    ForEachProduct(workspace,
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

}  // namespace kpTables::kpbook::commands
