// The cross-tab of projects and months.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

namespace {

const std::string kJetTail =
    "SELECT BILLLIST.pjID AS pjID, Proj.ClassCode,BILLLIST.项目名称 AS 项目名称, BILLLIST.工程名称 AS 工程名称, "
    "BILLLIST.项目编号 AS 项目编号,BILLLIST.工程性质, Sum(BILLLIST.数量) AS 合计 FROM (SELECT Lst.pjID, "
    "Proj.ClassCode,Proj.项目名称,Proj.项目编号,Proj.工程名称,Proj.工程性质, Lst.月份, Rec.数量, Rec.除税金额, "
    "Rec.税额, Rec.金额 FROM (出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN "
    "项目设置 "
    "As Proj ON Lst.pjID = Proj.项目ID) AS BILLLIST GROUP BY BILLLIST.pjID,BillLIST.ClassCode, BILLLIST.项目名称, "
    "BILLLIST.工程名称, BILLLIST.项目编号,BILLLIST.工程性质 PIVOT BILLLIST.月份";

}  // namespace

std::vector<std::string> ProjectTexts() {
    return {
        "SELECT BILLLIST.pjID AS pjID,BILLLIST.ClassCode,BILLLIST.项目名称 AS 项目名称, BILLLIST.工程名称 AS 工程名称, "
        "BILLLIST.项目编号 AS 项目编号,BILLLIST.工程性质,SUM(CASE 月份 when 1 then billlist.数量 else 0 end) as 一,"
        "sum(case 月份 when 2 then billlist.数量 else 0 end) as 二,sum(case 月份 when 3 then billlist.数量 else 0 end) "
        "as 三,sum(case 月份 when 4 then billlist.数量 else 0 end) as 四,sum(case 月份 when 5 then billlist.数量 else "
        "0 "
        "end) as 五,sum(case 月份 when 6 then billlist.数量 else 0 end) as 六,sum(case 月份 when 7 then billlist.数量 "
        "else 0 end) as 七,sum(case 月份 when 8 then billlist.数量 else 0 end) as 八,sum(case 月份 when 9 then "
        "billlist.数量 else 0 end) as 九,sum(case 月份 when 10 then billlist.数量 else 0 end) as 十,sum(case 月份 when "
        "11 then billlist.数量 else 0 end) as 十一,sum(case 月份 when 12 then billlist.数量 else 0 end) as "
        "十二,Sum(BILLLIST.数量) As 合计 FROM (SELECT Lst.pjID, "
        "Proj.ClassCode,Proj.项目名称,Proj.项目编号,Proj.工程名称,Proj.工程性质, Lst.月份 AS 月份, Rec.数量, "
        "Rec.除税金额, Rec.税额, Rec.金额 FROM (出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) "
        "LEFT JOIN 项目设置 As Proj ON Lst.pjID = Proj.项目ID) AS BILLLIST GROUP BY "
        "BILLLIST.pjID,BillLIST.ClassCode, BILLLIST.项目名称, BILLLIST.工程名称, BILLLIST.项目编号,BILLLIST.工程性质",
        "TRANSFORM Sum(BILLLIST.数量) AS 月合计 " + kJetTail,
        "TRANSFORM Sum(BILLLIST.金额) AS 月合计 " + kJetTail,
    };
}

}  // namespace kpTables::sql::parse
