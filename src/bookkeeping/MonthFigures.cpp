#include "bookkeeping/MonthFigures.h"

#include <string>

#include "bookkeeping/BillKinds.h"
#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"

namespace kpTables::bookkeeping {

namespace {

double Number(const Variant& value) { return value.IsNull() ? 0 : CDbl(value); }
Currency Amount(const Variant& value) { return value.IsNull() ? Currency() : CCur(value); }

/// Reads the cells of a row from left to right.
class Cells {
public:
    explicit Cells(const Recordset& row) : row_(row) {}

    std::int32_t NextWhole() {
        const Variant value = Next();
        return value.IsNull() ? 0 : CLng(value);
    }
    Total NextTotal() {
        Total total;
        total.quantity = Number(Next());
        total.amount = Amount(Next());
        return total;
    }
    Stock NextStock() {
        Stock stock;
        stock.price = Number(Next());
        stock.quantity = Number(Next());
        stock.amount = Amount(Next());
        return stock;
    }

private:
    Variant Next() { return row_.GetValue(column_++); }

    const Recordset& row_;
    int column_ = 0;
};

FiguresByProduct ReadFigures(Connection& book, const std::string& figures, const BillKind& kind,
                             const std::string& ofMonth) {
    const std::string key = kind.key;
    FiguresByProduct byProduct;
    const auto rows = book.Execute("Select pdID," + figures + ",Count(*) As 行数 From " + kind.Lines() + " Where " +
                                   key + " In (Select " + key + " From " + kind.Headers() + ofMonth +
                                   ") And pdID Is Not Null Group by pdID");
    for (; !rows->Eof(); rows->MoveNext()) {
        Cells cells(*rows);
        const std::int32_t product = cells.NextWhole();
        BillFigures& of = byProduct[product];
        of.sums = cells.NextStock();
        of.lines = cells.NextWhole();
    }
    return byProduct;
}

void AddTo(TotalsByProduct& totals, const FiguresByProduct& month) {
    for (const auto& [product, figures] : month) {
        Total& total = totals[product];
        total.quantity += figures.sums.quantity;
        total.amount = total.amount + figures.sums.amount;
    }
}

}  // namespace

std::vector<BalanceRow> ReadBalance(Connection& book, std::int32_t warehouse, std::int32_t month) {
    const auto rows = book.Execute(
        "Select pdID,年份,上期库存单价,上期库存数量,上期库存金额,本期入库单价,本期入库数量,本期入库金额,"
        "累计入库数量,累计入库金额,本期出库单价,本期出库数量,本期出库金额,累计出库数量,累计出库金额,"
        "本期库存单价,本期库存数量,本期库存金额 From 仓库余额表" +
        OfMonth(warehouse, month) + " And pdID Is Not Null Order by pdID");
    std::vector<BalanceRow> balance;
    balance.reserve(static_cast<std::size_t>(rows->RecordCount()));
    for (; !rows->Eof(); rows->MoveNext()) {
        Cells cells(*rows);
        BalanceRow row;
        row.product = cells.NextWhole();
        row.year = cells.NextWhole();
        row.opening = cells.NextStock();
        row.in = cells.NextStock();
        row.inTotal = cells.NextTotal();
        row.out = cells.NextStock();
        row.outTotal = cells.NextTotal();
        row.closing = cells.NextStock();
        if (!balance.empty() && balance.back().product == row.product) {
            balance.back().doubled = true;
        } else {
            balance.push_back(row);
        }
    }
    return balance;
}

void BillMonth::Read(Connection& book, std::int32_t warehouse, std::int32_t month) {
    const std::string bills = "Avg(除税单价) As 单价,Sum(数量) As 数量,Sum(除税金额) As 金额";
    const std::string ofMonth = OfMonth(warehouse, month);
    in = ReadFigures(book, bills, kInbound, ofMonth);
    out = ReadFigures(book, bills, kOutbound, ofMonth);
    cost = ReadFigures(book, "Avg(单价) As 单价,Sum(数量) As 数量,Sum(金额) As 金额", kCost, ofMonth);
    AddTo(inTotal, in);
    AddTo(outTotal, out);
    AddTo(costTotal, cost);
}

}  // namespace kpTables::bookkeeping
