// The daily report.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

namespace {

const std::string kServerSelect =
    "SELECT Prod.ClassCode, rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号,Prod.计量单位 , "
    "Prod.进位方法, "
    "Prod.最低库存, Prod.最高库存, Sum(rec.数量) AS 数量, AVG(rec.除税单价) AS 单价, SUM(rec.除税金额) AS 金额, "
    "SUM(rec.税额) AS 税额, SUM(rec.金额) AS 合计  FROM 出库记录 rec INNER JOIN  出库目录 lst ON rec.BillID = "
    "lst.BillID "
    "INNER JOIN  商品设置 Prod ON rec.pdID = Prod.pdID ";
const std::string kServerGroup =
    " GROUP BY Prod.ClassCode, rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格,Prod.型号 , Prod.计量单位, "
    "Prod.进位方法, Prod.最低库存, Prod.最高库存  ORDER BY Prod.ClassCode, Prod.商品编号";
const std::string kServerDate =
    "CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)";

const std::string kJetSelect =
    "SELECT Prod.ClassCode, rec.pdID,Prod.商品名称,Prod.商品编号, Prod.规格, Prod.型号, "
    "Prod.计量单位,Prod.进位方法,Prod.最低库存,Prod.最高库存, Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 单价, "
    "Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 ";
const std::string kJetInbound =
    "FROM (入库记录 AS rec INNER JOIN 入库目录 AS lst ON Rec.BillID = Lst.BillID) INNER JOIN 商品设置 AS Prod ON "
    "Rec.pdID = Prod.pdID ";
const std::string kJetOutbound =
    "FROM (出库记录 AS rec INNER JOIN 出库目录 AS lst ON Rec.BillID = Lst.BillID) INNER JOIN 商品设置 AS Prod ON "
    "Rec.pdID = Prod.pdID ";
const std::string kJetGroup =
    " GROUP BY Prod.ClassCode, rec.pdID,Prod.商品名称,Prod.商品编号,Prod.规格, Prod.型号, Prod.计量单位, "
    "Prod.进位方法,Prod.最低库存,Prod.最高库存  ORDER BY Prod.ClassCode,Prod.商品编号 ";

}  // namespace

std::vector<std::string> DailyTexts() {
    return {
        kServerSelect + "Where (" + kServerDate + "=CAST('2004-3-7' AS DATETIME)) " + kServerGroup,
        kServerSelect + "Where (" + kServerDate + ">=CAST(2004-3-1 AS DATETIME)) And (" + kServerDate +
            "<CAST('2004-3-7' AS DATETIME))  And Lst.dpID=2 And Lst.ksID=7 And (Lst.单据类型='调拨单') " + kServerGroup,
        kJetSelect + kJetInbound + "Where (CDATE(年份 & '-' & 月份 & '-' & 日子)=#2004-3-7#) " + kJetGroup,
        kJetSelect + kJetOutbound +
            "Where (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-1#) And (CDATE(年份 & '-' & 月份 & '-' & "
            "日子)<#2004-3-7#)  And Lst.dpID=2 And Lst.ksID=7 And (Lst.单据类型='普通发票' OR "
            "Lst.单据类型='增值税发票') " +
            kJetGroup,
        "SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 FROM 入库目录 AS Lst INNER JOIN "
        "入库记录 AS Rec ON Lst.BillID = Rec.BillID Where 月份=3 GROUP BY Lst.月份, Lst.日子 Order by 日子",
        "SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 FROM 出库目录 AS Lst INNER JOIN "
        "出库记录 AS Rec ON Lst.BillID = Rec.BillID Where 月份=3 And Lst.dpID=2 GROUP BY Lst.月份, Lst.日子 Order by "
        "日子",
        "Select Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 From 仓库余额表 Where 月份=3",
        "Select Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 From 仓库余额表 Where 月份=3 And dpID=2",
    };
}

}  // namespace kpTables::sql::parse
