// The warehouse balance table: listing, deletion, pruning and repair of its rows.
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fragments.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

std::string WarehousePiece(std::int32_t warehouse) { return IdPiece(" And dpID=", warehouse); }

std::string MonthPiece(std::int16_t month) { return IdPiece(" And 月份=", month); }

/// Lines of one kind ("入库" or "出库") whose product has no balance row. The texts of the two kinds differ in the
/// blanks of their sub-query.
std::string MissingProducts(const std::string& kind, const std::string& blanks, std::int16_t month) {
    const std::string months = IdPiece(" Where 月份<=", month);
    return "Select Distinct pdID,dpID From " + kind + "记录 Where pdID not in (Select Distinct" + blanks +
           "pdID From 仓库余额表" + months + ") And BillID In (Select BillId From " + kind + "目录" + months + ")";
}

}  // namespace

RecordsetPtr CTables::rs月份列表(bool rDESC) {
    return db::Query(
        cnn_, std::string("Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份") + (rDESC ? " DESC" : ""));
}

bool CTables::Del仓库余额(std::int32_t rdpID) {
    try {
        db::Execute(cnn_, "Delete From 仓库余额表 Where dpID=" + Text(rdpID));
    } catch (const std::exception&) {
        return false;
    }
    return false;
}

RecordsetPtr CTables::rs仓库余额表(std::int32_t rdpID, std::int16_t rMonth) {
    const std::string pieces = WarehousePiece(rdpID) + MonthPiece(rMonth);
    if (pieces.empty()) return db::OpenTable(cnn_, "仓库余额表");
    return db::OpenText(cnn_, "Select * From 仓库余额表 Where True " + pieces);
}

void CTables::Del仓库余额表(std::int32_t rdpID, std::int16_t rMonth) {
    db::Execute(cnn_, "Delete From 仓库余额表 Where True " + WarehousePiece(rdpID) + MonthPiece(rMonth));
}

void CTables::清理仓库余额表(InOut<std::int16_t> rMonth, std::int32_t rdpID) {
    db::Execute(cnn_, "Delete From 仓库余额表 Where 月份<" + Text(rMonth.get()) + WarehousePiece(rdpID));
}

bool CTables::商品已经入库(InOut<std::int32_t> rpdID, std::int32_t rdpID) {
    db::Execute(cnn_, "Select Top 2  * From 入库记录 Where pdID=" + Text(rpdID.get()) + IdPiece(" And 仓库=", rdpID));
    return false;
}

RecordsetPtr CTables::rs仓库余额表期初(std::int16_t rMotnh, std::int32_t rdpID, bool rInitial) {
    if (!rInitial)
        return db::Query(cnn_, "SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 Where True " +
                                   WarehousePiece(rdpID) + " And 月份=" + Text(rMotnh) + " ORDER BY 仓库余额表.pdID");
    if (rdpID < 1)
        return db::Query(cnn_, "SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 ORDER BY pdID");
    return db::Query(cnn_,
                     "SELECT pdID,Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 FROM 仓库余额表 Where dpID=" +
                         Text(rdpID) + " Group by pdID ORDER BY pdID");
}

RecordsetPtr CTables::rs余额记录(std::int32_t rdpID, InOut<std::int16_t> rMonth) {
    if (rMonth.get() == 0) {
        const auto first = db::Query(cnn_, "Select TOP 1 月份 From 仓库余额表  ORDER BY 月份");
        if (first->RecordCount() > 0) {
            const Variant month = first->Fields("月份").Value();
            rMonth = month.IsNull() ? std::int16_t{1} : CInt(month);
        }
    }
    if (rMonth.get() <= 0) return nullptr;
    return db::Query(
        cnn_,
        std::string("SELECT BnRec.pdID As pdID,") + kBalanceFigures +
            ",Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法,Prod.最低库存,Prod.最高库存,"
            "Prod.ClassCode FROM 仓库余额表 As BnRec Left Join 商品设置 As Prod On BnRec.pdID=Prod.pdID " +
            WhereClause(WarehousePiece(rdpID) + MonthPiece(rMonth), "Where ") +
            " Group by BnRec.pdID,Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法,"
            "Prod.最低库存,Prod.最高库存,Prod.ClassCode  "
            " Order by Prod.ClassCode");
}

void CTables::CheckBnProduct(std::int16_t rMonth) {
    RepairBalanceRows("入库", MissingProducts("入库", " ", rMonth), rMonth);
    RepairBalanceRows("出库", MissingProducts("出库", "  ", rMonth), rMonth);
}

void CTables::RepairBalanceRows(const std::string& kind, const std::string& missing, std::int16_t month) {
    const auto rows = db::Query(cnn_, missing);
    const std::int32_t count = rows->RecordCount();
    if (count <= 0) return;
    const auto answer = host_->MsgBox(kind + "记录中，有仓库余额表中没有的记录：" + Text(count) + ",是否修正？",
                                      MessageButtons::YesNo, "检查" + kind + "记录");
    if (answer != MessageAnswer::Yes) return;

    const auto years = db::Query(cnn_, "Select Top 2 年份 From 仓库余额表 Order by 年份 DESC");
    const std::string year = years->RecordCount() > 0 ? db::TextField(*years, "年份") : "";
    for (; !rows->Eof(); rows->MoveNext())
        db::Execute(cnn_, "Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (" + year + "," + Text(month) + "," +
                              db::TextField(*rows, "pdID") + "," + db::TextField(*rows, "dpID") + ")");
}

}  // namespace kpTables
