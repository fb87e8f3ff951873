// Summaries per product and per partner, the products that occur in a source, one product's balance and cost records.
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fragments.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// From a month to another.
struct MonthRange {
    std::int16_t begin;
    std::int16_t end;

    bool IsClosed() const { return begin >= 1 && end >= 1; }
};

// The ranges differ on purpose: products in a source and costs and partners read only a 0 as an open side, so that a
// negative month lets every month in; product sums read anything below 1 so. Costs and product sums compare a single
// month with =.

std::string From(const std::string& column, std::int16_t month) { return column + ">=" + Text(month); }
std::string UpTo(const std::string& column, std::int16_t month) { return column + "<=" + Text(month); }

std::string Between(const std::string& column, MonthRange months) {
    return "(" + From(column, months.begin) + " And " + UpTo(column, months.end) + ")";
}

std::string BetweenOrAt(const std::string& column, MonthRange months) {
    return months.begin == months.end ? "(" + column + "=" + Text(months.begin) + ")" : Between(column, months);
}

/// The side that is given while the other is 0; "" when neither or a negative month is.
std::string OpenRange(const std::string& column, MonthRange months) {
    if (months.begin == 0 && months.end >= 1) return UpTo(column, months.end);
    if (months.end == 0 && months.begin >= 1) return From(column, months.begin);
    return "";
}

std::string AndPiece(const std::string& condition) { return condition.empty() ? "" : " And " + condition; }

/// The one-sided forms name another column than the range on purpose.
std::string NumberPiece(const std::string& first, const std::string& last) {
    if (!first.empty() && !last.empty()) return " And (单据编号>='" + first + "' And 单据编号<='" + last + "') ";
    if (!last.empty()) return " And 编号<='" + last + "' ";
    if (!first.empty()) return " And 编号>='" + first + "' ";
    return "";
}

std::string LinesOfBills(const std::string& kind, const std::string& key, const std::string& headerKey,
                         const std::string& pieces) {
    return "Select pdID From " + kind + "记录 Where " + key + " in (Select " + headerKey + " From " + kind +
           "目录 Where True " + pieces + ")";
}

std::string KindPiece(const std::string& type) {
    if (type == "购进") return " And (单据类型='普通发票' or 单据类型='增值税发票')";
    if (type == "调拨") return " And 单据类型='调拨单'";
    return "";
}

const char* const kProductColumns =
    "Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, "
    "Prod.最高库存, Prod.ClassCode ";

/// kind is the bill family; key joins headers and lines, join the products.
std::string ProductSums(const std::string& kind, const std::string& key, const std::string& sums,
                        const std::string& join, const std::string& pieces) {
    return "SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, " + sums + kProductColumns + "FROM (" +
           kind + "目录 AS Lst INNER JOIN " + kind + "记录 AS Rec ON Lst." + key + " = Rec." + key + ") " + join +
           " JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID " + WhereClause(pieces, "Where ") + " GROUP BY Rec.pdID, " +
           kProductColumns;
}

}  // namespace

RecordsetPtr CTables::rs商品列表(std::int32_t rdpID, std::int32_t rksID, std::int16_t rBeginMonth,
                                 std::int16_t rEndMonth, const std::string& rWhere, const std::string& rNo1,
                                 const std::string& rNo2) {
    const MonthRange months{rBeginMonth, rEndMonth};
    const std::string period = AndPiece(months.IsClosed() ? Between("月份", months) : OpenRange("月份", months)) +
                               IdPiece(" And dpID=", rdpID);
    std::string source;
    if (rWhere == "盘点") source = "SELECT pdID FROM 仓库盘点表 Where True " + period;
    if (rWhere == "仓库") source = "Select pdID From 仓库余额表 Where True " + period;
    if (rWhere == "入库" || rWhere == "出库")
        source =
            LinesOfBills(rWhere, "BillID", "billID", period + IdPiece(" And ksID=", rksID) + NumberPiece(rNo1, rNo2));
    if (rWhere == "成本") source = LinesOfBills(rWhere, "CostID", "CostID", period);
    return db::Query(cnn_, "Select * From 商品设置 Where pdID in (" + source + ") Order by ClassCode,商品编号");
}

RecordsetPtr CTables::rs期初记录(std::int32_t rdpID, std::int32_t rpdID) {
    return db::Query(cnn_, std::string("SELECT pdID,年份,月份,") + kBalanceFigures +
                               " FROM 仓库余额表 WHERE 仓库余额表.pdID=" + Text(rpdID) + IdPiece(" And dpID=", rdpID) +
                               " Group by pdID,年份,月份 Order by 年份,月份");
}

RecordsetPtr CTables::rs成本记录(std::int32_t rdpID, InOut<std::int32_t> rpdID) {
    return db::Query(cnn_,
                     "Select 成本目录.*,成本目录.CostID as CostID,成本记录.* from 成本目录,成本记录 "
                     "Where 成本目录.costid=成本记录.costid " +
                         IdPiece(" And 成本目录.dpID=", rdpID) + " And 成本记录.pdID=" + Text(rpdID.get()) +
                         " Order by 月份,成本目录.costID");
}

RecordsetPtr CTables::rs商品汇总(const std::string& rWhich, std::int16_t rBeginMonth, std::int16_t rEndMonth,
                                 std::int32_t rdpID, std::int32_t rksID, const std::string& rType) {
    const MonthRange months{rBeginMonth, rEndMonth};
    const std::string column = "Lst.月份";
    std::string period;
    if (months.IsClosed())
        period = BetweenOrAt(column, months);
    else if (months.end >= 1)
        period = UpTo(column, months.end);
    else if (months.begin >= 1)
        period = From(column, months.begin);
    const std::string pieces = AndPiece(period) + IdPiece(" And Lst.dpID=", rdpID);
    if (rWhich == "成本")
        return db::Query(cnn_, ProductSums(rWhich, "CostID", "Sum(Rec.金额) AS 金额, ", "INNER", pieces));
    // 金额 and 合计 are both the net amount, and 除税单价 is a sum of prices.
    return db::Query(cnn_, ProductSums(rWhich, "BillID",
                                       "Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, "
                                       "Sum(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) AS 合计, ",
                                       "LEFT", pieces + KindPiece(rType) + IdPiece(" And Lst.ksID=", rksID)));
}

RecordsetPtr CTables::rs成本汇总(InOut<std::int16_t> rBeginMonth, InOut<std::int16_t> rEndMonth,
                                 InOut<std::int32_t> rdpID) {
    const MonthRange months{rBeginMonth.get(), rEndMonth.get()};
    const std::string column = "Lst.月份";
    const std::string pieces = AndPiece(months.IsClosed() ? BetweenOrAt(column, months) : OpenRange(column, months)) +
                               IdPiece(" And dpID=", rdpID);
    return db::Query(cnn_,
                     "SELECT Rec.pdID, Avg(Rec.单价) AS 单价, Sum(Rec.数量) AS 数量, Sum(Rec.金额) AS 金额 "
                     "FROM 成本记录 As Rec INNER JOIN 成本目录 As Lst ON Rec.CostID = Lst.CostID " +
                         WhereClause(pieces, " Where ") + " GROUP BY Rec.pdID ");
}

RecordsetPtr CTables::rs单位汇总(InOut<std::int16_t> rBeginMonth, InOut<std::int16_t> rEndMonth,
                                 InOut<std::string> rWhich) {
    const MonthRange months{rBeginMonth.get(), rEndMonth.get()};
    const std::string column = "Lst.月份";
    const std::string period = months.IsClosed() ? Between(column, months) : OpenRange(column, months);
    const bool suppliers = rWhich.get() == "厂商";
    const std::string kind = suppliers ? "入库" : "出库";
    // The two texts differ in the blanks after the company name.
    return db::Query(
        cnn_, std::string("SELECT Lst.ksID,ks.ClassCode, Ks.企业名称") + (suppliers ? " , " : ",") +
                  "Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) AS 除税金额, "
                  "Sum(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, Sum(Rec.税额) AS 税额 FROM (" +
                  kind + "记录 AS Rec INNER JOIN " + kind + "目录 AS Lst ON Rec.BillID = Lst.BillID) LEFT JOIN " +
                  (suppliers ? "厂商资料" : "客户资料") + " AS Ks ON Lst.ksID = Ks.KSID " +
                  (period.empty() ? "" : "Where " + period) + " GROUP BY Lst.ksID, Ks.企业名称,Ks.ClassCode");
}

}  // namespace kpTables
