// The warehouse balance table: listing, deletion, pruning and repair of its rows.
#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/Convert.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

std::string OfWarehouse(std::int32_t warehouse) { return IdClause(" And dpID={id}", warehouse); }

std::string OfMonth(std::int16_t month) { return IdClause(" And 月份={id}", month); }

// Lines whose product has no balance row. The two texts differ in the blanks of their sub-query.
constexpr Template<"months"> kMissingInbound =
    "Select Distinct pdID,dpID From 入库记录 Where pdID not in (Select Distinct pdID From 仓库余额表{months}) "
    "And BillID In (Select BillId From 入库目录{months})";
constexpr Template<"months"> kMissingOutbound =
    "Select Distinct pdID,dpID From 出库记录 Where pdID not in (Select Distinct  pdID From 仓库余额表{months}) "
    "And BillID In (Select BillId From 出库目录{months})";

}  // namespace

RecordsetPtr CTables::rs月份列表(bool rDESC) {
    return db::Query(cnn_, rDESC ? "Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份 DESC"
                                 : "Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份");
}

bool CTables::Del仓库余额(std::int32_t rdpID) {
    Done([&] { db::Execute(cnn_, Fill("Delete From 仓库余额表 Where dpID={warehouse}", "warehouse"_gap(rdpID))); });
    return false;
}

RecordsetPtr CTables::rs仓库余额表(std::int32_t rdpID, std::int16_t rMonth) {
    if (rdpID < 1 && rMonth < 1) return db::OpenTable(cnn_, "仓库余额表");
    return db::OpenText(cnn_, Fill("Select * From 仓库余额表 Where True {ofWarehouse}{ofMonth}",
                                   "ofWarehouse"_gap(OfWarehouse(rdpID)), "ofMonth"_gap(OfMonth(rMonth))));
}

void CTables::Del仓库余额表(std::int32_t rdpID, std::int16_t rMonth) {
    db::Execute(cnn_, Fill("Delete From 仓库余额表 Where True {ofWarehouse}{ofMonth}",
                           "ofWarehouse"_gap(OfWarehouse(rdpID)), "ofMonth"_gap(OfMonth(rMonth))));
}

void CTables::清理仓库余额表(InOut<std::int16_t> rMonth, std::int32_t rdpID) {
    db::Execute(cnn_, Fill("Delete From 仓库余额表 Where 月份<{month}{ofWarehouse}", "month"_gap(rMonth),
                           "ofWarehouse"_gap(OfWarehouse(rdpID))));
}

bool CTables::商品已经入库(InOut<std::int32_t> rpdID, std::int32_t rdpID) {
    db::Execute(cnn_, Fill("Select Top 2  * From 入库记录 Where pdID={product}{ofWarehouse}", "product"_gap(rpdID),
                           "ofWarehouse"_gap(IdClause(" And 仓库={id}", rdpID))));
    return false;
}

RecordsetPtr CTables::rs仓库余额表期初(std::int16_t rMotnh, std::int32_t rdpID, bool rInitial) {
    if (!rInitial)
        return db::Query(cnn_, Fill("SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 "
                                    "Where True {ofWarehouse} And 月份={month} ORDER BY 仓库余额表.pdID",
                                    "ofWarehouse"_gap(OfWarehouse(rdpID)), "month"_gap(rMotnh)));
    if (rdpID < 1)
        return db::Query(cnn_, "SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 ORDER BY pdID");
    return db::Query(cnn_, Fill("SELECT pdID,Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 FROM 仓库余额表 "
                                "Where dpID={warehouse} Group by pdID ORDER BY pdID",
                                "warehouse"_gap(rdpID)));
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
        cnn_, Fill("SELECT BnRec.pdID As pdID,{figures},Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,"
                   "Prod.进位方法,Prod.最低库存,Prod.最高库存,Prod.ClassCode "
                   "FROM 仓库余额表 As BnRec Left Join 商品设置 As Prod On BnRec.pdID=Prod.pdID {where} "
                   "Group by BnRec.pdID,Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法,"
                   "Prod.最低库存,Prod.最高库存,Prod.ClassCode   Order by Prod.ClassCode",
                   "figures"_gap(kBalanceFigures),
                   "where"_gap(WhereClause("Where {conditions}", OfWarehouse(rdpID) + OfMonth(rMonth)))));
}

void CTables::CheckBnProduct(std::int16_t rMonth) {
    const std::string months = IdClause(" Where 月份<={id}", rMonth);
    RepairBalanceRows("入库", Fill(kMissingInbound, "months"_gap(months)), rMonth);
    RepairBalanceRows("出库", Fill(kMissingOutbound, "months"_gap(months)), rMonth);
}

void CTables::RepairBalanceRows(const std::string& kind, const std::string& missing, std::int16_t month) {
    const auto rows = db::Query(cnn_, missing);
    const std::int32_t count = rows->RecordCount();
    if (count <= 0) return;
    const auto answer = host_->MsgBox(
        Fill("{kind}记录中，有仓库余额表中没有的记录：{count},是否修正？", "kind"_gap(kind), "count"_gap(count)),
        MessageButtons::YesNo, Fill("检查{kind}记录", "kind"_gap(kind)));
    if (answer != MessageAnswer::Yes) return;

    const auto years = db::Query(cnn_, "Select Top 2 年份 From 仓库余额表 Order by 年份 DESC");
    const std::string year = years->RecordCount() > 0 ? db::TextField(*years, "年份") : "";
    for (; !rows->Eof(); rows->MoveNext())
        db::Execute(cnn_, Fill("Insert into 仓库余额表 (年份,月份,pdID,dpID) Values ({year},{month},{product},"
                               "{warehouse})",
                               "year"_gap(year), "month"_gap(month), "product"_gap(db::TextField(*rows, "pdID")),
                               "warehouse"_gap(db::TextField(*rows, "dpID"))));
}

}  // namespace kpTables
