// Outbound goods per project and month.
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Fill.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// A column for each of the twelve months; the measure is the quantity whatever is asked for.
constexpr std::string_view kServerSummary =
    "SELECT BILLLIST.pjID AS pjID,BILLLIST.ClassCode,BILLLIST.项目名称 AS 项目名称, "
    "BILLLIST.工程名称 AS 工程名称, BILLLIST.项目编号 AS 项目编号,BILLLIST.工程性质,"
    "SUM(CASE 月份 when 1 then billlist.数量 else 0 end) as 一,"
    "sum(case 月份 when 2 then billlist.数量 else 0 end) as 二,"
    "sum(case 月份 when 3 then billlist.数量 else 0 end) as 三,"
    "sum(case 月份 when 4 then billlist.数量 else 0 end) as 四,"
    "sum(case 月份 when 5 then billlist.数量 else 0 end) as 五,"
    "sum(case 月份 when 6 then billlist.数量 else 0 end) as 六,"
    "sum(case 月份 when 7 then billlist.数量 else 0 end) as 七,"
    "sum(case 月份 when 8 then billlist.数量 else 0 end) as 八,"
    "sum(case 月份 when 9 then billlist.数量 else 0 end) as 九,"
    "sum(case 月份 when 10 then billlist.数量 else 0 end) as 十,"
    "sum(case 月份 when 11 then billlist.数量 else 0 end) as 十一,"
    "sum(case 月份 when 12 then billlist.数量 else 0 end) as 十二,"
    "Sum(BILLLIST.数量) As 合计 FROM "
    "(SELECT Lst.pjID, Proj.ClassCode,Proj.项目名称,Proj.项目编号,Proj.工程名称,Proj.工程性质, Lst.月份 AS 月份, "
    "Rec.数量, Rec.除税金额, Rec.税额, Rec.金额 "
    "FROM (出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) "
    "LEFT JOIN 项目设置 As Proj ON Lst.pjID = Proj.项目ID) AS BILLLIST "
    "GROUP BY BILLLIST.pjID,BillLIST.ClassCode, BILLLIST.项目名称, BILLLIST.工程名称, BILLLIST.项目编号,"
    "BILLLIST.工程性质";

/// A column for each month that occurs. Proj.ClassCode names a table of the sub-query.
constexpr Template<"measure"> kJetSummary =
    "TRANSFORM Sum(BILLLIST.{measure}) AS 月合计 SELECT BILLLIST.pjID AS pjID, Proj.ClassCode,"
    "BILLLIST.项目名称 AS 项目名称, BILLLIST.工程名称 AS 工程名称, BILLLIST.项目编号 AS 项目编号,BILLLIST.工程性质, "
    "Sum(BILLLIST.数量) AS 合计 FROM "
    "(SELECT Lst.pjID, Proj.ClassCode,Proj.项目名称,Proj.项目编号,Proj.工程名称,Proj.工程性质, Lst.月份, "
    "Rec.数量, Rec.除税金额, Rec.税额, Rec.金额 "
    "FROM (出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) "
    "LEFT JOIN 项目设置 As Proj ON Lst.pjID = Proj.项目ID) AS BILLLIST "
    "GROUP BY BILLLIST.pjID,BillLIST.ClassCode, BILLLIST.项目名称, BILLLIST.工程名称, BILLLIST.项目编号,"
    "BILLLIST.工程性质 PIVOT BILLLIST.月份";

}  // namespace

RecordsetPtr CTables::rs项目汇总表(InOut<std::string> rWhich) {
    if (rWhich.get() != "金额") rWhich = std::string("数量");
    if (isSQL_) return db::Execute(cnn_, kServerSummary);
    return db::Execute(cnn_, Fill(kJetSummary, "measure"_gap(rWhich)));
}

}  // namespace kpTables
