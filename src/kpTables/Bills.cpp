// Bills: line listings, distinct values, totals, the audit stamp and deletion.
#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/Convert.h"
#include "kpTables/Directions.h"
#include "kpTables/Numbers.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

std::string WhereLines(std::int32_t warehouse, std::int32_t product) {
    return WhereClause(" Where {conditions}",
                       IdClause(" And Lst.dpID={id}", warehouse) + IdClause(" And Rec.pdID={id}", product));
}

/// Lines of one partner with the product's columns; kind is "入库" or "出库".
std::string PartnerLines(const std::string& kind, std::int32_t partner) {
    return Fill(
        "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,"
        "Prod.计量单位,Prod.进位方法 "
        "FROM (({kind}记录 AS Rec INNER JOIN {kind}目录 AS Lst ON Rec.BillID = Lst.BillID) "
        "INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID {where} "
        "Order by Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ",
        "kind"_gap(kind), "where"_gap(WhereClause(" Where {conditions}", IdClause(" And Lst.KSID={id}", partner))));
}

/// Every selector but "入库" means the outbound lines.
std::string LinesOf(const std::string& which) { return which == kInbound ? "入库记录" : "出库记录"; }

std::string DistinctValues(const std::string& column, const std::string& which) {
    return Fill("Select Distinct {column} From {lines} Order by {column}", "column"_gap(column),
                "lines"_gap(LinesOf(which)));
}

}  // namespace

RecordsetPtr CTables::rs入库记录(InOut<std::int32_t> rdpID, InOut<std::int32_t> rpdID) {
    return db::Query(cnn_, Fill("SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Ks.企业名称 "
                                "FROM ((入库记录 AS Rec INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID) "
                                "INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) "
                                "LEFT JOIN 厂商资料 AS Ks ON Lst.ksID = Ks.KSID {where} "
                                "Order by Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ",
                                "where"_gap(WhereLines(rdpID, rpdID))));
}

RecordsetPtr CTables::rs出库记录(InOut<std::int32_t> rdpID, InOut<std::int32_t> rpdID) {
    return db::Query(cnn_, Fill("SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, ks.企业名称 "
                                "FROM ((出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID) "
                                "INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) "
                                "LEFT JOIN 客户资料 AS KS ON Lst.ksID = KS.ksID {where} "
                                "Order by Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ",
                                "where"_gap(WhereLines(rdpID, rpdID))));
}

RecordsetPtr CTables::rs单位入库记录(InOut<std::int32_t> rksID) {
    return db::Query(cnn_, PartnerLines(kInbound, rksID));
}

RecordsetPtr CTables::rs单位出库记录(InOut<std::int32_t> rksID) {
    return db::Query(cnn_, PartnerLines(kOutbound, rksID));
}

RecordsetPtr CTables::rs经手人(const std::string& m_Which) {
    return db::Query(cnn_, DistinctValues("经手人", m_Which));
}

RecordsetPtr CTables::rs交接人(const std::string& m_Which) {
    return db::Query(cnn_, DistinctValues("交接人", m_Which));
}

RecordsetPtr CTables::rs包装(const std::string& m_Which) { return db::Query(cnn_, DistinctValues("包装", m_Which)); }

RecordsetPtr CTables::rs货位(const std::string& m_Which) {
    return db::Query(cnn_, Fill("Select Distinct 货位 From  {lines} Order by 货位", "lines"_gap(LinesOf(m_Which))));
}

Currency CTables::Get单据金额(std::int32_t rBillID, const std::string& m_Which) {
    const auto sum = db::Query(cnn_, Fill("Select Sum(除税金额) As 金额 From {which}记录 Where BillID={bill}",
                                          "which"_gap(m_Which), "bill"_gap(rBillID)));
    return sum->RecordCount() > 0 ? vCur(sum->Fields("金额").Value()) : Currency();
}

double CTables::Get单据数量(std::int32_t rBillID, const std::string& m_Which) {
    const auto sum = db::Query(cnn_, Fill("Select Sum(数量) As 数量 From {lines} Where BillID={bill}",
                                          "lines"_gap(LinesOf(m_Which)), "bill"_gap(rBillID)));
    return sum->RecordCount() > 0 ? vDbl(sum->Fields("数量").Value()) : 0;
}

bool CTables::BillAdulting(InOut<std::string> rWhich, InOut<std::int32_t> rBillID, InOut<std::string> rAdultor,
                           InOut<Variant> rAdultDate) {
    return Done([&] {
        const std::string& which = rWhich;
        if (which == kInbound || which == kOutbound)
            db::Execute(cnn_,
                        Fill("Update {which}目录 Set 审核员='{auditor}',审核日期=#{date}# Where BillID={bill}",
                             "which"_gap(which), "auditor"_gap(rAdultor), "date"_gap(rAdultDate), "bill"_gap(rBillID)));
    });
}

bool CTables::Del_单据(std::int32_t BillID, const std::string& Which) {
    if (Which == kInbound || Which == kOutbound) {
        db::Execute(cnn_, Fill("Delete From {which}目录 Where BillID={bill}", "which"_gap(Which), "bill"_gap(BillID)));
        db::Execute(cnn_, Fill("Delete From {which}记录 Where BillID={bill}", "which"_gap(Which), "bill"_gap(BillID)));
    }
    return false;
}

}  // namespace kpTables
