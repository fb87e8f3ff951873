// Per-product stock figures: one number about a product in a warehouse and a month.
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Numbers.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

constexpr std::string_view kQuantity = "数量";
constexpr std::string_view kAmount = "金额";
constexpr std::string_view kTax = "税额";
constexpr std::string_view kGross = "合计";
constexpr std::string_view kPrice = "单价";

/// Amount / quantity; 0 when the quantity is 0 or either is Null. Error 6 when it is too large for a Double.
double UnitPrice(Recordset& row) {
    const Variant amount = row.Fields(kAmount).Value();
    const Variant quantity = row.Fields(kQuantity).Value();
    if (!IsNumeric(amount) || !IsNumeric(quantity) || CDbl(quantity) == 0) return 0;
    return Finite(CDbl(amount) / CDbl(quantity));
}

/// The bill kinds of a selector; direct is the clause with the direction's own kind. "%发票" is compared with =, so it
/// matches that text alone.
std::string_view OfKind(std::string_view which, std::string_view direct) {
    if (which == "直接") return direct;
    if (which == "购进") return " And 单据类型='%发票'";
    if (which == "调拨") return " And 单据类型='调拨单'";
    return "";
}

/// One figure of the lines of a direction; kind is "入库" or "出库".
Currency MovementFigure(const ConnectionPtr& cnn, std::string_view kind, const std::string& conditions,
                        std::string_view what) {
    const auto row = db::Query(
        cnn,
        Fill("SELECT Sum(Rec.数量) AS 数量, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 "
             "FROM {kind}记录 AS Rec INNER JOIN {kind}目录 AS Lst ON Rec.BillID = Lst.BillID {where}",
             "kind"_gap(kind), "where"_gap(WhereClause("Where {conditions}", conditions))));
    if (row->Eof()) return Currency();
    if (what == kQuantity || what == kAmount || what == kTax || what == kGross) return vCur(row->Fields(what).Value());
    if (what == kPrice) return CCur(UnitPrice(*row));
    return Currency();
}

std::string Conditions(std::int32_t warehouse, std::int32_t product, std::int16_t month, bool isTotal,
                       std::string_view ofKind) {
    return Fill("{ofMonth}{ofWarehouse}{ofProduct}{ofKind}",
                "ofMonth"_gap(isTotal ? IdClause(" And Lst.月份<={id}", month) : IdClause(" And Lst.月份={id}", month)),
                "ofWarehouse"_gap(IdClause(" And Lst.dpID={id}", warehouse)),
                "ofProduct"_gap(IdClause(" And Rec.pdID={id}", product)), "ofKind"_gap(ofKind));
}

}  // namespace

double CTables::Get上期库存(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What) {
    return Trapped(0.0, [&]() -> double {
        const std::string conditions = IdClause(" And bn.月份={id}", rMonth) + IdClause(" And bn.dpID={id}", rdpID) +
                                       IdClause(" And bn.pdID={id}", rpdID);
        const auto row = db::Query(cnn_, Fill("SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 "
                                              "FROM 仓库余额表 AS Bn {where}",
                                              "where"_gap(WhereClause("Where {conditions}", conditions))));
        if (row->Eof()) return 0;
        if (What == kQuantity || What == kAmount) return vDbl(row->Fields(What).Value());
        return UnitPrice(*row);
    });
}

Currency CTables::Get商品入库(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What,
                              const std::string& Which, bool isTotal) {
    return Trapped(Currency(), [&] {
        const std::string_view ofKind = OfKind(Which, " And 单据类型='入库单'");
        return MovementFigure(cnn_, "入库", Conditions(rdpID, rpdID, rMonth, isTotal, ofKind), What);
    });
}

Currency CTables::Get商品出库(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What,
                              const std::string& Which, bool isTotal) {
    return Trapped(Currency(), [&] {
        const std::string_view ofKind = OfKind(Which, " And 单据类型='出库单'");
        return MovementFigure(cnn_, "出库", Conditions(rdpID, rpdID, rMonth, isTotal, ofKind), What);
    });
}

Currency CTables::Get商品成本(std::int32_t rdpID, std::int32_t rpdID, const std::string& rMonth,
                              const std::string& What, bool isTotal) {
    return Trapped(Currency(), [&] {
        const bool hasMonth = !rMonth.empty() && CDbl(rMonth) > 0;
        const std::string_view month = hasMonth ? std::string_view(rMonth) : "";
        const auto row = db::Query(
            cnn_, Fill("Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in "
                       "(Select CostID From 成本目录 Where True {ofWarehouse}{ofMonth}){ofProduct} Group by pdID",
                       "ofWarehouse"_gap(IdClause(" And dpID={id}", rdpID)),
                       "ofMonth"_gap(isTotal ? TextClause(" And 月份<={text}", month)
                                             : TextClause(" And 月份={text}", month)),
                       "ofProduct"_gap(IdClause(" And pdID={id}", rpdID))));
        if (row->Eof()) return Currency();
        if (What == kQuantity || What == kAmount) return vCur(row->Fields(What).Value());
        return CCur(UnitPrice(*row));
    });
}

// The figures below are added up in Currency, the opening one being converted first.

double CTables::Get本期库存(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What,
                            bool CostUsed) {
    if (rMonth == 0) return 0;
    if (What != kQuantity && What != kAmount) return 0;
    return Trapped(0.0, [&] { return StockFigure(rdpID, rpdID, rMonth, What, CostUsed).ToDouble(); });
}

// Unlike in Get本期库存, month 0 is no special case, nothing is trapped, and a quantity of 0 ends in the division
// error; kept for compatibility.
double CTables::Get商品库存(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What,
                            bool CostUsed) {
    if (What == kQuantity || What == kAmount) return StockFigure(rdpID, rpdID, rMonth, What, CostUsed).ToDouble();
    if (What != kPrice) return 0;
    const Currency quantity = StockFigure(rdpID, rpdID, rMonth, std::string(kQuantity), CostUsed);
    const std::string amount(kAmount);
    const Currency opening = CCur(Get上期库存(rdpID, rpdID, rMonth, amount));
    const Currency inbound = Get商品入库(rdpID, rpdID, rMonth, amount);
    const Currency cost = Get商品成本(rdpID, rpdID, Text(rMonth), amount);
    const Currency outbound = Get商品出库(rdpID, rpdID, rMonth, amount);
    const Currency stock = opening + inbound - (CostUsed ? cost : outbound);
    if (quantity == Currency()) Raise(ErrorNumber::DivisionByZero);
    return stock.ToDouble() / quantity.ToDouble();
}

Currency CTables::StockFigure(std::int32_t warehouse, std::int32_t product, std::int16_t month, const std::string& what,
                              bool costUsed) {
    const Currency opening = CCur(Get上期库存(warehouse, product, month, what));
    const Currency inbound = Get商品入库(warehouse, product, month, what);
    const Currency outbound = what == kAmount && costUsed ? Get商品成本(warehouse, product, Text(month), what)
                                                          : Get商品出库(warehouse, product, month, what);
    return opening + inbound - outbound;
}

}  // namespace kpTables
