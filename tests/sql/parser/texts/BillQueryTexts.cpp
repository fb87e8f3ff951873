// The query form: product summary, lines, bill numbers and bill count.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

namespace {

const std::string kFigures =
    " Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.除税单价) AS "
    "除税单价, Sum(Rec.除税金额) AS 除税金额, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, "
    "Prod.进位方法, Prod.最低库存, Prod.最高库存, Prod.ClassCode ";
const std::string kSummaryInbound =
    "FROM 项目设置 As pj RIGHT JOIN ((入库目录 AS Lst INNER JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID) INNER "
    "JOIN "
    "商品设置 AS Prod ON Rec.pdID = Prod.pdID) ON pj.项目ID=Lst.pjID ";
const std::string kSummaryOutbound =
    "FROM 项目设置 As pj RIGHT JOIN ((出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) INNER "
    "JOIN "
    "商品设置 AS Prod ON Rec.pdID = Prod.pdID) ON pj.项目ID=Lst.pjID ";
const std::string kGroup =
    " Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, "
    "Prod.ClassCode ";

std::vector<std::string> ProductSummaryTexts() {
    return {
        "SELECT Rec.pdID," + kFigures + kSummaryInbound + " GROUP BY Rec.pdID," + kGroup,
        "SELECT Rec.pdID,pj.项目名称," + kFigures + kSummaryOutbound + " GROUP BY Rec.pdID,pj.项目名称," + kGroup,
        "SELECT Rec.pdID,pj.项目编号," + kFigures + kSummaryOutbound + " GROUP BY Rec.pdID,pj.项目编号," + kGroup,
        "SELECT Rec.pdID,rec.经手人," + kFigures + kSummaryInbound + "Where  Lst.dpID=3" +
            " GROUP BY Rec.pdID,rec.经手人," + kGroup,
        "SELECT Rec.pdID," + kFigures + kSummaryInbound +
            "Where  (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#)  And Lst.dpID=3 And 类型='零售' And "
            "Lst.单据编号>='R0301'  And Lst.ksID=7 And Lst.pjID=2 And 经手人='李强' And 交接人='赵敏' And 包装='箱' "
            "And "
            "货位<>'A1' And 期限>=30" +
            " GROUP BY Rec.pdID," + kGroup,
        "SELECT Rec.pdID," + kFigures + kSummaryInbound +
            "Where  (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
            "DATETIME)>=CAST('2004-3-7' AS DATETIME) And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + "
            "'-' + CAST(日子 AS char(2)) AS DATETIME)<=CAST('2004-3-31' AS DATETIME))" +
            " GROUP BY Rec.pdID," + kGroup,
        "SELECT Rec.pdID," + kFigures + kSummaryInbound + "Where  包装 Like '%箱%' GROUP BY Rec.pdID," + kGroup,
    };
}

const std::string kLineSelect =
    "SELECT (Lst.年份 & '-' & Lst.月份 & '-' &  Lst.日子) AS 日期,Lst.单据类型 AS 单据名称,Lst.类型 AS "
    "单据类型,Lst.单据编号, Lst.单据类型, Lst.单据编号, P.pdID,P.ClassCode,P.商品名称,P.商品编号, P.规格, "
    "P.型号,P.计量单位,P.进位方法,P.最高库存,P.最低库存, R.单价, R.数量, R.金额,R.税额,R.除税单价,R.除税金额, "
    "R.经手人, "
    "R.交接人, R.包装, R.货位, J.项目编号, J.项目名称, J.工程名称 , B.企业名称 AS 单位名称,R.BillID ";
const std::string kLinesInbound =
    "FROM (项目设置 AS J RIGHT JOIN ((入库记录 AS R INNER JOIN 入库目录 AS Lst ON R.BillID = Lst.BillID) INNER JOIN "
    "商品设置 AS P ON R.pdID = P.pdID) ON J.项目ID = Lst.pjID) LEFT JOIN 客户资料 AS B ON Lst.ksID = B.KSID ";
const std::string kLinesOutbound =
    "FROM (项目设置 AS J RIGHT JOIN ((出库记录 AS R INNER JOIN 出库目录 AS Lst ON R.BillID = Lst.BillID) INNER JOIN "
    "商品设置 AS P ON R.pdID = P.pdID) ON J.项目ID = Lst.pjID) LEFT JOIN 客户资料 AS B ON Lst.ksID = B.KSID ";

std::vector<std::string> FormTexts() {
    return {
        kLineSelect + kLinesInbound,
        kLineSelect + kLinesOutbound,
        kLineSelect + kLinesOutbound +
            "Where  ((CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) And (CDATE(年份 & '-' & 月份 & '-' & "
            "日子)<=#2004-3-31#)) And Lst.dpID=3 And 类型='零售' And (Lst.单据编号>='C0301' And Lst.单据编号<='C0399') "
            " "
            "And Lst.ksID=7 And Lst.pjID=2 And 经手人='李强' And 期限=30",
        "Select 单据编号 FROM 出库目录 Where billID in (Select billID From 出库记录 Where True  And pdID=5)  Order by "
        "月份,BillType,单据编号",
        "Select 单据编号 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True  And pdID=5 And "
        "经手人='李强' And 交接人='赵敏' And 包装='箱' And 货位='A1' And 期限<30)  And dpID=3 And ksID=7 And "
        "((CDATE(年份 & "
        "'-' & 月份 & '-' & 日子)>=#2004-3-7#) And (CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2004-3-31#)) Order by "
        "月份,BillType,单据编号",
        "Select Count(单据类型) As 单据计数 FROM 出库目录 Where billID in (Select billID From 出库记录 Where True ) ",
        "Select Count(单据类型) As 单据计数 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True  And "
        "pdID=5)  And dpID=3 And ksID=7 And (CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2004-3-31#) And 单据类型 = "
        "'入库单' "
        "And 类型='零售'",
        "Select Count(单据类型) As 单据计数 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True )  "
        "And "
        "CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
        "DATETIME)>=CAST('2004-3-7' AS DATETIME) ",
    };
}

}  // namespace

std::vector<std::string> BillQueryTexts() {
    std::vector<std::string> texts = ProductSummaryTexts();
    for (std::string& text : FormTexts()) texts.push_back(std::move(text));
    return texts;
}

}  // namespace kpTables::sql::parse
