// Bills: line listings, distinct values, totals, the audit stamp and deletion.
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fragments.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

const char* const kInbound = "入库";
const char* const kOutbound = "出库";

const char* const kLineOrder = " Order by Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ";

std::string WarehouseAndProduct(std::int32_t warehouse, std::int32_t product) {
    return WhereClause(IdPiece(" And Lst.dpID=", warehouse) + IdPiece(" And Rec.pdID=", product), " Where ");
}

/// Lines of one partner with the product's columns; kind is "入库" or "出库".
std::string PartnerLines(const std::string& kind, std::int32_t partner) {
    return "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,"
           "Prod.计量单位,Prod.进位方法 "
           "FROM ((" +
           kind + "记录 AS Rec INNER JOIN " + kind +
           "目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) "
           "LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID " +
           WhereClause(IdPiece(" And Lst.KSID=", partner), " Where ") + kLineOrder;
}

/// Every selector but "入库" means the outbound lines.
std::string LinesOf(const std::string& which) { return which == kInbound ? "入库记录" : "出库记录"; }

std::string DistinctValues(const std::string& column, const std::string& which) {
    return "Select Distinct " + column + " From " + LinesOf(which) + " Order by " + column;
}

}  // namespace

RecordsetPtr CTables::rs入库记录(InOut<std::int32_t> rdpID, InOut<std::int32_t> rpdID) {
    return db::Query(cnn_,
                     "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Ks.企业名称 "
                     "FROM ((入库记录 AS Rec INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID) "
                     "INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) "
                     "LEFT JOIN 厂商资料 AS Ks ON Lst.ksID = Ks.KSID " +
                         WarehouseAndProduct(rdpID, rpdID) + kLineOrder);
}

RecordsetPtr CTables::rs出库记录(InOut<std::int32_t> rdpID, InOut<std::int32_t> rpdID) {
    return db::Query(cnn_,
                     "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, ks.企业名称 "
                     "FROM ((出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID) "
                     "INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) "
                     "LEFT JOIN 客户资料 AS KS ON Lst.ksID = KS.ksID " +
                         WarehouseAndProduct(rdpID, rpdID) + kLineOrder);
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
    return db::Query(cnn_, "Select Distinct 货位 From  " + LinesOf(m_Which) + " Order by 货位");
}

Currency CTables::Get单据金额(std::int32_t rBillID, const std::string& m_Which) {
    const auto sum =
        db::Query(cnn_, "Select Sum(除税金额) As 金额 From " + m_Which + "记录 Where BillID=" + Text(rBillID));
    return sum->RecordCount() > 0 ? vCur(sum->Fields("金额").Value()) : Currency();
}

double CTables::Get单据数量(std::int32_t rBillID, const std::string& m_Which) {
    const auto sum =
        db::Query(cnn_, "Select Sum(数量) As 数量 From " + LinesOf(m_Which) + " Where BillID=" + Text(rBillID));
    return sum->RecordCount() > 0 ? vDbl(sum->Fields("数量").Value()) : 0;
}

bool CTables::BillAdulting(InOut<std::string> rWhich, InOut<std::int32_t> rBillID, InOut<std::string> rAdultor,
                           InOut<Variant> rAdultDate) {
    try {
        const std::string& which = rWhich;
        if (which == kInbound || which == kOutbound)
            db::Execute(cnn_, "Update " + which + "目录 Set 审核员='" + rAdultor.get() + "',审核日期=#" +
                                  Text(rAdultDate.get()) + "# Where BillID=" + Text(rBillID.get()));
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool CTables::Del_单据(std::int32_t BillID, const std::string& Which) {
    if (Which == kInbound || Which == kOutbound) {
        db::Execute(cnn_, "Delete From " + Which + "目录 Where BillID=" + Text(BillID));
        db::Execute(cnn_, "Delete From " + Which + "记录 Where BillID=" + Text(BillID));
    }
    return false;
}

}  // namespace kpTables
