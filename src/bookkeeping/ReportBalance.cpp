#include "kpTables/bookkeeping/ReportBalance.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bookkeeping/OutboundGoods.h"
#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/bookkeeping/ClosedMonths.h"

namespace kpTables::bookkeeping {

namespace {

using AmountsByProduct = std::map<std::int32_t, Currency>;

void AddOutbound(Connection& book, Valuation valuation, const std::string& ofMonth, bool isSubtracted,
                 AmountsByProduct& amounts) {
    for (const auto& goods : OutboundAt(book, valuation, ofMonth, SumsOf::Months)) {
        if (!goods.product) continue;
        Currency& sum = amounts[*goods.product];
        sum = isSubtracted ? sum - goods.amount : sum + goods.amount;
    }
}

/// What the valuation adds to the outbound amounts of warehouses that were closed at the other one.
AmountsByProduct Differences(Connection& book, std::int32_t warehouse, std::int16_t month, Valuation valuation) {
    AmountsByProduct differences;
    const ClosedMonths closedMonths(book);
    for (const auto& [id, through] : closedMonths.All()) {
        if ((warehouse > 0 && id != warehouse) || month > through) continue;
        const auto closed = ClosedWith(book, id, month);
        if (!closed || *closed == valuation) continue;
        AddOutbound(book, valuation, OfMonth(id, month), false, differences);
        AddOutbound(book, *closed, OfMonth(id, month), true, differences);
    }
    return differences;
}

Currency AmountIn(Recordset& row, const char* column) {
    const Variant value = row.Fields(column).Value();
    return value.IsNull() ? Currency() : CCur(value);
}

void AddToAmount(Recordset& row, const std::string& stock, Currency added, CTables& tables) {
    const Currency amount = AmountIn(row, (stock + "金额").c_str()) + added;
    row.Fields(stock + "金额").SetValue(amount);
    row.Fields(stock + "单价").SetValue(tables.CalcPrice(Variant(amount), row.Fields(stock + "数量").Value()));
}

}  // namespace

RecordsetPtr BalanceAt(CTables& tables, std::int32_t warehouse, InOut<std::int16_t> month, Valuation valuation) {
    constexpr std::int16_t kAnyMonth = 1;
    auto rows = tables.rs余额记录(warehouse, month.get());
    // Without balance rows the method sends no statement, but a report needs its columns.
    if (!rows) return tables.rs余额记录(warehouse, kAnyMonth);
    const auto differences = Differences(*tables.Cnn(), warehouse, month, valuation);
    if (differences.empty()) return rows;
    std::vector<FieldInfo> fields;
    for (int i = 0; i < rows->FieldCount(); ++i) fields.push_back(rows->FieldAt(i));
    auto valued = std::make_shared<MemoryRecordset>(std::move(fields));
    for (; !rows->Eof(); rows->MoveNext()) {
        valued->AddNew();
        for (int i = 0; i < rows->FieldCount(); ++i) valued->SetValue(i, rows->GetValue(i));
        const Variant product = rows->Fields("pdID").Value();
        const auto difference = product.IsNull() ? differences.end() : differences.find(CLng(product));
        if (difference != differences.end()) {
            AddToAmount(*valued, "本期出库", difference->second, tables);
            AddToAmount(*valued, "本期库存", -difference->second, tables);
        }
        valued->Update();
    }
    if (valued->RecordCount() > 0) valued->MoveFirst();
    return valued;
}

}  // namespace kpTables::bookkeeping
