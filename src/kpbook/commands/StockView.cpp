#include <map>
#include <memory>
#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/bookkeeping/ReportStock.h"
#include "kpTables/text/Message.h"
#include "kpbook/commands/ReportCharts.h"
#include "kpbook/commands/ReportLayouts.h"
#include "kpbook/commands/ReportNotes.h"
#include "kpbook/commands/ReportView.h"

namespace kpTables::kpbook::commands {

namespace {

std::vector<FieldInfo> StockColumns() {
    return {{"pdID", VarType::Long},
            {"商品名称", VarType::String},
            {"上期库存数量", VarType::Double},
            {"上期库存单价", VarType::Double},
            {"上期库存金额", VarType::Currency},
            {"本期入库数量", VarType::Currency},
            {"本期入库单价", VarType::Currency},
            {"本期入库金额", VarType::Currency},
            {"本期出库数量", VarType::Currency},
            {"本期出库单价", VarType::Currency},
            {"本期出库金额", VarType::Currency},
            {"本期库存数量", VarType::Double},
            {"本期库存单价", VarType::Double},
            {"本期库存金额", VarType::Currency}};
}

void AddStockRow(Recordset& rows, std::int32_t product, const std::string& name,
                 const bookkeeping::StockFigures& figures) {
    const auto& in = figures.inbound;
    const auto& out = figures.outbound;
    const Variant values[] = {product,
                              name,
                              figures.openingQuantity,
                              figures.openingPrice,
                              figures.openingAmount,
                              in.quantity,
                              in.price,
                              in.amount,
                              out.quantity,
                              out.price,
                              out.amount,
                              figures.Quantity(),
                              figures.Price(),
                              figures.Amount()};
    rows.AddNew();
    int column = 0;
    for (const Variant& value : values) rows.SetValue(column++, value);
    rows.Update();
}

std::map<std::int32_t, std::string> ProductNames(Workspace& workspace) {
    std::map<std::int32_t, std::string> names;
    const auto rows = workspace.connection->Execute("Select pdID,商品名称 From 商品设置");
    for (; !rows->Eof(); rows->MoveNext()) names.emplace(CLng(rows->GetValue(0)), Text(rows->GetValue(1)));
    return names;
}

}  // namespace

RecordsetPtr StockRows(Workspace& workspace, const StockOptions& options, bookkeeping::Valuation valuation) {
    const bookkeeping::StockScope scope{options.month, options.warehouse, valuation};
    auto rows = std::make_shared<MemoryRecordset>(StockColumns());
    if (options.product) {
        const auto id = std::to_string(*options.product);
        const auto name =
            NameOf(workspace, "Select 商品名称 From 商品设置 Where pdID=" + id, Message("product {1}", id));
        AddStockRow(*rows, *options.product, name,
                    bookkeeping::StockOf(workspace.tables, *workspace.connection, scope, *options.product));
    } else {
        auto names = ProductNames(workspace);
        for (const auto& [product, figures] : bookkeeping::StockByProduct(*workspace.connection, scope)) {
            AddStockRow(*rows, product, names[product], figures);
        }
    }
    if (rows->RecordCount() > 0) rows->MoveFirst();
    return rows;
}

output::View StockViewOf(ReportDesk& desk, const StockOptions& options) {
    auto& workspace = desk.workspace;
    const auto rows = StockRows(workspace, options, desk.Valuation());
    output::View view;
    if (!desk.isForPrograms) {
        view.title = "库存表  " + desk.YearText() + std::to_string(options.month) + "月  " +
                     workspace.tables.Get仓库名称(options.warehouse.value_or(0)) + "  " +
                     ValuationText(desk.Valuation());
    }
    view.notes = MonthNotes(workspace, options.month, options.warehouse, "数字来自已录入的单据");
    auto laidOut = LayOut(*rows, StockLayout(), desk.columns, workspace.tables, desk.names, false);
    if (desk.hasCharts) {
        view.charts.push_back(StockValueChart(workspace, desk.Valuation()));
        for (auto& chart : ChartsOf("stock", *laidOut.rows)) view.charts.push_back(std::move(chart));
    }
    view.rows = laidOut.rows;
    view.presentation = std::move(laidOut.presentation);
    return view;
}

}  // namespace kpTables::kpbook::commands
