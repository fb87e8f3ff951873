// The balance table: its lists, its repair and the figures of one product.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

namespace {

const std::string kBalanceRows =
    "SELECT BnRec.pdID As pdID,Avg(上期库存单价) As 上期库存单价,Sum(上期库存数量) As 上期库存数量,Sum(上期库存金额) "
    "As "
    "上期库存金额,Avg(本期入库单价) As 本期入库单价,Sum(本期入库数量) As 本期入库数量,Sum(本期入库金额) As "
    "本期入库金额,Sum(累计入库数量) As 累计入库数量,Sum(累计入库金额) As 累计入库金额,Avg(本期出库单价) As "
    "本期出库单价,Sum(本期出库数量) As 本期出库数量,Sum(本期出库金额) As 本期出库金额,Sum(累计出库数量) As "
    "累计出库数量,Sum(累计出库金额) As 累计出库金额,Avg(本期库存单价) As 本期库存单价,Sum(本期库存数量) As "
    "本期库存数量,Sum(本期库存金额) As "
    "本期库存金额,Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法,Prod.最低库存,"
    "Prod.最高库存,Prod.ClassCode FROM 仓库余额表 As BnRec Left Join 商品设置 As Prod On BnRec.pdID=Prod.pdID ";
const std::string kBalanceGroup =
    " Group by BnRec.pdID,Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法,Prod.最低库存,"
    "Prod.最高库存,Prod.ClassCode   Order by Prod.ClassCode";

std::vector<std::string> TableTexts() {
    return {
        "Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份",
        "Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份 DESC",
        "Delete From 仓库余额表 Where dpID=3",
        "Select * From 仓库余额表 Where True  And dpID=3",
        "Select * From 仓库余额表 Where True  And 月份=2",
        "Select * From 仓库余额表 Where True  And dpID=3 And 月份=2",
        "Delete From 仓库余额表 Where True ",
        "Delete From 仓库余额表 Where True  And dpID=3 And 月份=2",
        "Delete From 仓库余额表 Where 月份<0",
        "Delete From 仓库余额表 Where 月份<4 And dpID=3",
        "Select Top 2  * From 入库记录 Where pdID=5",
        "Select Top 2  * From 入库记录 Where pdID=5 And 仓库=3",
        "SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 ORDER BY pdID",
        "SELECT pdID,Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 FROM 仓库余额表 Where dpID=3 Group by pdID "
        "ORDER BY pdID",
        "SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 Where True  And 月份=0 ORDER BY "
        "仓库余额表.pdID",
        "SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 Where True  And dpID=3 And 月份=2 ORDER "
        "BY "
        "仓库余额表.pdID",
        "Select TOP 1 月份 From 仓库余额表  ORDER BY 月份",
        kBalanceRows + "Where  月份=3" + kBalanceGroup,
        kBalanceRows + "Where  dpID=3 And 月份=2" + kBalanceGroup,
    };
}

std::vector<std::string> RepairTexts() {
    return {
        "Select Distinct pdID,dpID From 入库记录 Where pdID not in (Select Distinct pdID From 仓库余额表) And BillID "
        "In "
        "(Select BillId From 入库目录)",
        "Select Distinct pdID,dpID From 入库记录 Where pdID not in (Select Distinct pdID From 仓库余额表 Where "
        "月份<=3) "
        "And BillID In (Select BillId From 入库目录 Where 月份<=3)",
        "Select Distinct pdID,dpID From 出库记录 Where pdID not in (Select Distinct  pdID From 仓库余额表) And BillID "
        "In "
        "(Select BillId From 出库目录)",
        "Select Distinct pdID,dpID From 出库记录 Where pdID not in (Select Distinct  pdID From 仓库余额表 Where "
        "月份<=3) "
        "And BillID In (Select BillId From 出库目录 Where 月份<=3)",
        "Select Top 2 年份 From 仓库余额表 Order by 年份 DESC",
        "Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (2004,3,5,2)",
    };
}

const std::string kOpening = "SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn ";
const std::string kFigures =
    "SELECT Sum(Rec.数量) AS 数量, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 ";
const std::string kInbound = "FROM 入库记录 AS Rec INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID ";
const std::string kOutbound = "FROM 出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID ";
const std::string kCost =
    "Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select CostID From "
    "成本目录 "
    "Where True ";

std::vector<std::string> FigureTexts() {
    return {
        kOpening,
        kOpening + "Where  bn.月份=2",
        kOpening + "Where  bn.月份=2 And bn.dpID=3 And bn.pdID=5",
        kFigures + kInbound,
        kFigures + kInbound + "Where  Lst.月份=2 And Lst.dpID=3 And Rec.pdID=5",
        kFigures + kInbound + "Where  Lst.月份<=2 And Lst.dpID=3 And Rec.pdID=5 And 单据类型='入库单'",
        kFigures + kInbound + "Where  单据类型='%发票'",
        kFigures + kOutbound + "Where  Lst.月份=2 And 单据类型='调拨单'",
        kFigures + kOutbound + "Where  Rec.pdID=5 And 单据类型='出库单'",
        kCost + ") Group by pdID",
        kCost + " And dpID=3 And 月份=2) And pdID=5 Group by pdID",
        kCost + " And 月份<=2) Group by pdID",
    };
}

}  // namespace

std::vector<std::string> BalanceTexts() {
    std::vector<std::string> texts = TableTexts();
    for (std::string& text : RepairTexts()) texts.push_back(std::move(text));
    for (std::string& text : FigureTexts()) texts.push_back(std::move(text));
    return texts;
}

}  // namespace kpTables::sql::parse
