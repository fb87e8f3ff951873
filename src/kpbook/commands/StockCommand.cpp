#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/commands/StockFigures.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

std::vector<FieldInfo> Columns() {
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

void AddRow(Recordset& rows, std::int32_t product, const std::string& name, const StockFigures& figures) {
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

int Stock(const StockOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    if (options.warehouse) {
        const auto id = std::to_string(*options.warehouse);
        NameOf(workspace, "Select 仓库名称 From 仓库设置 Where dpID=" + id, "warehouse " + id);
    }
    MemoryRecordset rows(Columns());
    if (options.product) {
        const auto id = std::to_string(*options.product);
        const auto name = NameOf(workspace, "Select 商品名称 From 商品设置 Where pdID=" + id, "product " + id);
        AddRow(rows, *options.product, name, FiguresOf(workspace, options, *options.product));
    } else {
        auto names = ProductNames(workspace);
        for (const auto& [product, figures] : FiguresByProduct(workspace, options)) {
            AddRow(rows, product, names[product], figures);
        }
    }
    if (rows.RecordCount() > 0) rows.MoveFirst();
    output::WriteRecordset(rows, global);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
