// Summaries per product and per partner, the products that occur in a source, one product's balance and cost records.
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// A range of months; below 1 a side is not given.
struct MonthRange {
    std::int16_t begin;
    std::int16_t end;

    bool IsClosed() const { return begin >= 1 && end >= 1; }
};

/// Conditions on a column of months.
struct MonthClauses {
    Template<"begin", "end"> between;
    Template<"begin"> from;
    Template<"end"> upTo;
};
constexpr MonthClauses kHeaderMonths = {
    " And (Lst.月份>={begin} And Lst.月份<={end})",
    " And Lst.月份>={begin}",
    " And Lst.月份<={end}",
};
constexpr MonthClauses kMonths = {
    " And (月份>={begin} And 月份<={end})",
    " And 月份>={begin}",
    " And 月份<={end}",
};

// The ranges differ, kept for compatibility: products in a source, costs and partners read only a 0 as an open side, so
// that a negative month lets every month in; product sums read anything below 1 so. Costs and product sums compare a
// single month with =.

std::string Between(const MonthClauses& clauses, MonthRange months) {
    return Fill(clauses.between, "begin"_gap(months.begin), "end"_gap(months.end));
}

std::string BetweenOrAt(MonthRange months) {
    if (months.begin == months.end) return Fill(" And (Lst.月份={month})", "month"_gap(months.begin));
    return Between(kHeaderMonths, months);
}

/// The side that is given while the other is 0; "" when neither is given, or one is negative.
std::string OpenRange(const MonthClauses& clauses, MonthRange months) {
    if (months.begin == 0 && months.end >= 1) return Fill(clauses.upTo, "end"_gap(months.end));
    if (months.end == 0 && months.begin >= 1) return Fill(clauses.from, "begin"_gap(months.begin));
    return "";
}

/// The side that is given; "" when neither is.
std::string GivenRange(MonthRange months) {
    if (months.end >= 1) return Fill(kHeaderMonths.upTo, "end"_gap(months.end));
    if (months.begin >= 1) return Fill(kHeaderMonths.from, "begin"_gap(months.begin));
    return "";
}

/// The one-sided forms name another column than the range, kept for compatibility.
std::string OfNumbers(const std::string& first, const std::string& last) {
    if (!first.empty() && !last.empty())
        return Fill(" And (单据编号>='{first}' And 单据编号<='{last}') ", "first"_gap(first), "last"_gap(last));
    if (!last.empty()) return Fill(" And 编号<='{last}' ", "last"_gap(last));
    if (!first.empty()) return Fill(" And 编号>='{first}' ", "first"_gap(first));
    return "";
}

std::string_view OfType(std::string_view type) {
    if (type == "购进") return " And (单据类型='普通发票' or 单据类型='增值税发票')";
    if (type == "调拨") return " And 单据类型='调拨单'";
    return "";
}

}  // namespace

RecordsetPtr CTables::rs商品列表(std::int32_t rdpID, std::int32_t rksID, std::int16_t rBeginMonth,
                                 std::int16_t rEndMonth, const std::string& rWhere, const std::string& rNo1,
                                 const std::string& rNo2) {
    const MonthRange months{rBeginMonth, rEndMonth};
    const auto ofMonths = "ofMonths"_gap(months.IsClosed() ? Between(kMonths, months) : OpenRange(kMonths, months));
    const auto ofWarehouse = "ofWarehouse"_gap(IdClause(" And dpID={id}", rdpID));
    if (rWhere == "盘点")
        return db::Query(cnn_, Fill("Select * From 商品设置 Where pdID in (SELECT pdID FROM 仓库盘点表 "
                                    "Where True {ofMonths}{ofWarehouse}) Order by ClassCode,商品编号",
                                    ofMonths, ofWarehouse));
    if (rWhere == "仓库")
        return db::Query(cnn_, Fill("Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 "
                                    "Where True {ofMonths}{ofWarehouse}) Order by ClassCode,商品编号",
                                    ofMonths, ofWarehouse));
    if (rWhere == "成本")
        return db::Query(cnn_, Fill("Select * From 商品设置 Where pdID in (Select pdID From 成本记录 "
                                    "Where CostID in (Select CostID From 成本目录 "
                                    "Where True {ofMonths}{ofWarehouse})) Order by ClassCode,商品编号",
                                    ofMonths, ofWarehouse));
    if (rWhere == "入库" || rWhere == "出库")
        return db::Query(
            cnn_, Fill("Select * From 商品设置 Where pdID in (Select pdID From {kind}记录 "
                       "Where BillID in (Select billID From {kind}目录 "
                       "Where True {ofMonths}{ofWarehouse}{ofPartner}{ofNumbers})) Order by ClassCode,商品编号",
                       "kind"_gap(rWhere), ofMonths, ofWarehouse, "ofPartner"_gap(IdClause(" And ksID={id}", rksID)),
                       "ofNumbers"_gap(OfNumbers(rNo1, rNo2))));
    return db::Query(cnn_, "Select * From 商品设置 Where pdID in () Order by ClassCode,商品编号");
}

RecordsetPtr CTables::rs期初记录(std::int32_t rdpID, std::int32_t rpdID) {
    return db::Query(cnn_, Fill("SELECT pdID,年份,月份,{figures} FROM 仓库余额表 "
                                "WHERE 仓库余额表.pdID={product}{ofWarehouse} "
                                "Group by pdID,年份,月份 Order by 年份,月份",
                                "figures"_gap(kBalanceFigures), "product"_gap(rpdID),
                                "ofWarehouse"_gap(IdClause(" And dpID={id}", rdpID))));
}

RecordsetPtr CTables::rs成本记录(std::int32_t rdpID, InOut<std::int32_t> rpdID) {
    return db::Query(cnn_, Fill("Select 成本目录.*,成本目录.CostID as CostID,成本记录.* from 成本目录,成本记录 "
                                "Where 成本目录.costid=成本记录.costid {ofWarehouse} And 成本记录.pdID={product} "
                                "Order by 月份,成本目录.costID",
                                "ofWarehouse"_gap(IdClause(" And 成本目录.dpID={id}", rdpID)), "product"_gap(rpdID)));
}

RecordsetPtr CTables::rs商品汇总(const std::string& rWhich, std::int16_t rBeginMonth, std::int16_t rEndMonth,
                                 std::int32_t rdpID, std::int32_t rksID, const std::string& rType) {
    const MonthRange months{rBeginMonth, rEndMonth};
    const std::string conditions =
        (months.IsClosed() ? BetweenOrAt(months) : GivenRange(months)) + IdClause(" And Lst.dpID={id}", rdpID);
    if (rWhich == "成本")
        return db::Query(
            cnn_,
            Fill("SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, "
                 "Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, "
                 "Prod.最高库存, Prod.ClassCode FROM (成本目录 AS Lst INNER JOIN 成本记录 AS Rec "
                 "ON Lst.CostID = Rec.CostID) INNER JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID {where} "
                 "GROUP BY Rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, "
                 "Prod.最低库存, Prod.最高库存, Prod.ClassCode ",
                 "where"_gap(WhereClause("Where {conditions}", conditions))));
    const std::string all = Fill("{conditions}{ofType}{ofPartner}", "conditions"_gap(conditions),
                                 "ofType"_gap(OfType(rType)), "ofPartner"_gap(IdClause(" And Lst.ksID={id}", rksID)));
    // 金额 and 合计 are both the net amount, and 除税单价 is a sum of prices.
    return db::Query(
        cnn_, Fill("SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.除税金额) AS 金额, "
                   "Sum(Rec.税额) AS 税额, Sum(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) AS 合计, Prod.商品名称, "
                   "Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, "
                   "Prod.ClassCode FROM ({kind}目录 AS Lst INNER JOIN {kind}记录 AS Rec ON Lst.BillID = Rec.BillID) "
                   "LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID {where} "
                   "GROUP BY Rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, "
                   "Prod.进位方法, Prod.最低库存, Prod.最高库存, Prod.ClassCode ",
                   "kind"_gap(rWhich), "where"_gap(WhereClause("Where {conditions}", all))));
}

RecordsetPtr CTables::rs成本汇总(InOut<std::int16_t> rBeginMonth, InOut<std::int16_t> rEndMonth,
                                 InOut<std::int32_t> rdpID) {
    const MonthRange months{rBeginMonth.get(), rEndMonth.get()};
    const std::string conditions = (months.IsClosed() ? BetweenOrAt(months) : OpenRange(kHeaderMonths, months)) +
                                   IdClause(" And dpID={id}", rdpID);
    return db::Query(cnn_, Fill("SELECT Rec.pdID, Avg(Rec.单价) AS 单价, Sum(Rec.数量) AS 数量, Sum(Rec.金额) AS 金额 "
                                "FROM 成本记录 As Rec INNER JOIN 成本目录 As Lst ON Rec.CostID = Lst.CostID {where} "
                                "GROUP BY Rec.pdID ",
                                "where"_gap(WhereClause(" Where {conditions}", conditions))));
}

RecordsetPtr CTables::rs单位汇总(InOut<std::int16_t> rBeginMonth, InOut<std::int16_t> rEndMonth,
                                 InOut<std::string> rWhich) {
    const MonthRange months{rBeginMonth.get(), rEndMonth.get()};
    const auto where = "where"_gap(WhereClause(
        "Where{conditions}", months.IsClosed() ? Between(kHeaderMonths, months) : OpenRange(kHeaderMonths, months)));
    if (rWhich.get() == "厂商")
        return db::Query(
            cnn_,
            Fill("SELECT Lst.ksID,ks.ClassCode, Ks.企业名称 , Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 除税单价, "
                 "Sum(Rec.除税金额) AS 除税金额, Sum(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, "
                 "Sum(Rec.税额) AS 税额 FROM (入库记录 AS Rec INNER JOIN 入库目录 AS Lst "
                 "ON Rec.BillID = Lst.BillID) LEFT JOIN 厂商资料 AS Ks ON Lst.ksID = Ks.KSID {where} "
                 "GROUP BY Lst.ksID, Ks.企业名称,Ks.ClassCode",
                 where));
    return db::Query(
        cnn_, Fill("SELECT Lst.ksID,ks.ClassCode, Ks.企业名称,Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 除税单价, "
                   "Sum(Rec.除税金额) AS 除税金额, Sum(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, "
                   "Sum(Rec.税额) AS 税额 FROM (出库记录 AS Rec INNER JOIN 出库目录 AS Lst "
                   "ON Rec.BillID = Lst.BillID) LEFT JOIN 客户资料 AS Ks ON Lst.ksID = Ks.KSID {where} "
                   "GROUP BY Lst.ksID, Ks.企业名称,Ks.ClassCode",
                   where));
}

}  // namespace kpTables
