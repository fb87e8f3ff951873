// Reports: bill dates, one product's balance, totals by product, partner and free-text column.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

namespace {

std::vector<std::string> DateTexts() {
    return {
        "select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
        "DATETIME) from 入库目录 union select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' "
        "+ "
        "CAST(日子 AS char(2)) AS DATETIME) from 出库目录",
        "select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
        "DATETIME) AS 日期 from 入库目录 union select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS "
        "char(2)) + "
        "'-' + CAST(日子 AS char(2)) AS DATETIME) AS 日期 from 出库目录",
        "SELECT Distinct CDATE([list1].年份 & '-' &  [list1].月份 & '-' & [list1].日子) AS 日期 FROM 入库目录 as list1 "
        " "
        "ORDER BY CDATE([list1].年份 & '-' &  [list1].月份 & '-' & [list1].日子) UNION (SELECT Distinct "
        "CDATE([list2].年份 & '-' &  [list2].月份 & '-' & [list2].日子) AS 日期 FROM 出库目录 AS list2 ORDER BY "
        "CDATE([list2].年份 & '-' &  [list2].月份 & '-' & [list2].日子))",
    };
}

const std::string kOpening =
    "SELECT pdID,年份,月份,Avg(上期库存单价) As 上期库存单价,Sum(上期库存数量) As 上期库存数量,Sum(上期库存金额) As "
    "上期库存金额,Avg(本期入库单价) As 本期入库单价,Sum(本期入库数量) As 本期入库数量,Sum(本期入库金额) As "
    "本期入库金额,Sum(累计入库数量) As 累计入库数量,Sum(累计入库金额) As 累计入库金额,Avg(本期出库单价) As "
    "本期出库单价,Sum(本期出库数量) As 本期出库数量,Sum(本期出库金额) As 本期出库金额,Sum(累计出库数量) As "
    "累计出库数量,Sum(累计出库金额) As 累计出库金额,Avg(本期库存单价) As 本期库存单价,Sum(本期库存数量) As "
    "本期库存数量,Sum(本期库存金额) As 本期库存金额 FROM 仓库余额表 WHERE 仓库余额表.pdID=5";
const std::string kCostLines =
    "Select 成本目录.*,成本目录.CostID as CostID,成本记录.* from 成本目录,成本记录 Where "
    "成本目录.costid=成本记录.costid ";

std::vector<std::string> ProductTexts() {
    return {
        kOpening + " Group by pdID,年份,月份 Order by 年份,月份",
        kOpening + " And dpID=3 Group by pdID,年份,月份 Order by 年份,月份",
        kCostLines + " And 成本记录.pdID=5 Order by 月份,成本目录.costID",
        kCostLines + " And 成本目录.dpID=3 And 成本记录.pdID=5 Order by 月份,成本目录.costID",
    };
}

const std::string kCostTotals =
    "SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, Prod.商品名称, "
    "Prod.商品编号, "
    "Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, Prod.ClassCode FROM (成本目录 "
    "AS "
    "Lst INNER JOIN 成本记录 AS Rec ON Lst.CostID = Rec.CostID) INNER JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID ";
const std::string kTotals =
    "SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, "
    "Sum(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) AS 合计, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, "
    "Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, Prod.ClassCode ";
const std::string kInbound =
    "FROM (入库目录 AS Lst INNER JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 商品设置 AS Prod ON "
    "Rec.pdID = Prod.pdID ";
const std::string kOutbound =
    "FROM (出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 商品设置 AS Prod ON "
    "Rec.pdID = Prod.pdID ";
const std::string kTotalsGroup =
    " GROUP BY Rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, "
    "Prod.最低库存, Prod.最高库存, Prod.ClassCode ";

std::vector<std::string> TotalTexts() {
    return {
        kCostTotals + kTotalsGroup,
        kCostTotals + "Where  (Lst.月份=3)" + kTotalsGroup,
        kCostTotals + "Where  (Lst.月份>=1 And Lst.月份<=3) And Lst.dpID=2" + kTotalsGroup,
        kTotals + kInbound + kTotalsGroup,
        kTotals + kInbound + "Where  (Lst.月份=3)" + kTotalsGroup,
        kTotals + kInbound + "Where  Lst.月份<=3 And (单据类型='普通发票' or 单据类型='增值税发票')" + kTotalsGroup,
        kTotals + kOutbound + "Where  Lst.月份>=3 And Lst.dpID=2 And 单据类型='调拨单' And Lst.ksID=7" + kTotalsGroup,
        kTotals + kOutbound + "Where  Lst.ksID=7" + kTotalsGroup,
        "SELECT Rec.pdID, Avg(Rec.单价) AS 单价, Sum(Rec.数量) AS 数量, Sum(Rec.金额) AS 金额 FROM 成本记录 As Rec "
        "INNER "
        "JOIN 成本目录 As Lst ON Rec.CostID = Lst.CostID  GROUP BY Rec.pdID ",
        "SELECT Rec.pdID, Avg(Rec.单价) AS 单价, Sum(Rec.数量) AS 数量, Sum(Rec.金额) AS 金额 FROM 成本记录 As Rec "
        "INNER "
        "JOIN 成本目录 As Lst ON Rec.CostID = Lst.CostID  Where  (Lst.月份=3) And dpID=2 GROUP BY Rec.pdID ",
        "SELECT Rec.pdID, Avg(Rec.单价) AS 单价, Sum(Rec.数量) AS 数量, Sum(Rec.金额) AS 金额 FROM 成本记录 As Rec "
        "INNER "
        "JOIN 成本目录 As Lst ON Rec.CostID = Lst.CostID  Where  (Lst.月份>=1 And Lst.月份<=3) GROUP BY Rec.pdID ",
        "SELECT Rec.pdID, Avg(Rec.单价) AS 单价, Sum(Rec.数量) AS 数量, Sum(Rec.金额) AS 金额 FROM 成本记录 As Rec "
        "INNER "
        "JOIN 成本目录 As Lst ON Rec.CostID = Lst.CostID  Where  dpID=2 GROUP BY Rec.pdID ",
    };
}

const std::string kSuppliers =
    "SELECT Lst.ksID,ks.ClassCode, Ks.企业名称 , Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 除税单价, "
    "Sum(Rec.除税金额) AS 除税金额, Sum(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, Sum(Rec.税额) AS 税额 FROM (入库记录 "
    "AS Rec INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID) LEFT JOIN 厂商资料 AS Ks ON Lst.ksID = Ks.KSID ";
const std::string kCustomers =
    "SELECT Lst.ksID,ks.ClassCode, Ks.企业名称,Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) "
    "AS 除税金额, Sum(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, Sum(Rec.税额) AS 税额 FROM (出库记录 AS Rec INNER JOIN "
    "出库目录 AS Lst ON Rec.BillID = Lst.BillID) LEFT JOIN 客户资料 AS Ks ON Lst.ksID = Ks.KSID ";
const std::string kPartnerGroup = " GROUP BY Lst.ksID, Ks.企业名称,Ks.ClassCode";

std::vector<std::string> PartnerTexts() {
    return {
        kSuppliers + kPartnerGroup,
        kSuppliers + "Where (Lst.月份>=1 And Lst.月份<=3)" + kPartnerGroup,
        kSuppliers + "Where Lst.月份<=3" + kPartnerGroup,
        kCustomers + kPartnerGroup,
        kCustomers + "Where Lst.月份>=3" + kPartnerGroup,
    };
}

std::vector<std::string> ExtendedTexts() {
    return {
        "Select Distinct 经手人 From 入库记录 Where BillID in (Select billID From 入库目录 Where True ) Order by "
        "经手人",
        "Select Distinct 货位 From 入库记录 Where BillID in (Select billID From 入库目录 Where True  And 月份=3 And "
        "dpID=2) Order by 货位",
        "Select Distinct 包装 From 出库记录  Order by 包装",
        "Select pdID,交接人,Sum(数量) as 数量,sum(除税金额) as 金额 From 出库记录 Where BillID in (Select billID From "
        "出库目录 Where True  And 月份=0) Group by pdID,交接人",
        "Select pdID,交接人,Sum(数量) as 数量,sum(除税金额) as 金额 From 出库记录 Where BillID in (Select billID From "
        "出库目录 Where True  And 月份=3 And dpID=2) Group by pdID,交接人",
    };
}

}  // namespace

std::vector<std::string> SummaryTexts() {
    std::vector<std::string> texts = DateTexts();
    for (std::string& text : ProductTexts()) texts.push_back(std::move(text));
    for (std::string& text : TotalTexts()) texts.push_back(std::move(text));
    for (std::string& text : PartnerTexts()) texts.push_back(std::move(text));
    for (std::string& text : ExtendedTexts()) texts.push_back(std::move(text));
    return texts;
}

}  // namespace kpTables::sql::parse
