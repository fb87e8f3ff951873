// The filtered bill list with each of its filters.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

namespace {

const std::string kSelect =
    "SELECT Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, Sum(Rec.数量) AS 数量, "
    "Sum(Rec.除税金额) "
    "AS 金额,Sum(Rec.税额) As 税额,Sum(Rec.金额) As 合计, Lst.BillID, Lst.录入员, Lst.录入日期, Lst.审核员, "
    "Lst.审核日期, "
    "Lst.说明, dp.仓库名称, ks.企业名称,pj.项目名称,pj.项目编号 ";
const std::string kInbound =
    "FROM 项目设置 AS pj RIGHT JOIN (仓库设置 AS dp RIGHT JOIN (厂商资料 AS ks RIGHT JOIN (入库目录 AS Lst LEFT JOIN "
    "入库记录 AS Rec ON Lst.BillID = Rec.BillID) ON ks.KSID = Lst.ksID) ON dp.dpID = Lst.dpID) ON pj.项目ID = "
    "Lst.pjID ";
const std::string kOutbound =
    "FROM 项目设置 AS pj RIGHT JOIN (仓库设置 AS dp RIGHT JOIN (客户资料 AS ks RIGHT JOIN (出库目录 AS Lst LEFT JOIN "
    "出库记录 AS Rec ON Lst.BillID = Rec.BillID) ON ks.KSID = Lst.ksID) ON dp.dpID = Lst.dpID) ON pj.项目ID = "
    "Lst.pjID ";
const std::string kGroup =
    " GROUP BY Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, Lst.BillID, Lst.录入员, "
    "Lst.录入日期, "
    "Lst.审核员, Lst.审核日期, Lst.说明, Rec.dpID, dp.仓库名称,ks.企业名称,pj.项目名称,pj.项目编号 ";
const std::string kOrder = " Order by Lst.月份,Lst.单据类型,Lst.单据编号 ";

std::string Inbound(const std::string& condition, const std::string& having = "") {
    return kSelect + kInbound + condition + kGroup + having + kOrder;
}

std::string Outbound(const std::string& condition, const std::string& having = "") {
    return kSelect + kOutbound + condition + kGroup + having + kOrder;
}

}  // namespace

std::vector<std::string> BillListTexts() {
    return {
        Inbound(""),
        Outbound(""),
        Inbound(" WHERE  类型='零售'"),
        Inbound(" WHERE  Lst.dpID=3"),
        Outbound(" WHERE  Lst.ksID=7"),
        Outbound(" WHERE  Lst.pjID=-9"),
        Inbound(" WHERE  (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) "),
        Inbound(" WHERE  (CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2004-3-31#)"),
        Inbound(" WHERE  ((CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) And (CDATE(年份 & '-' & 月份 & '-' & "
                "日子)<=#2004-3-31#))"),
        Outbound(" WHERE  CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
                 "DATETIME)>=CAST('2004-3-7' AS DATETIME) "),
        Outbound(" WHERE  CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
                 "DATETIME)<=CAST('2004-3-31' AS DATETIME)"),
        Outbound(" WHERE  (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
                 "DATETIME)>=CAST('2004-3-7' AS DATETIME) And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) "
                 "+ '-' + CAST(日子 AS char(2)) AS DATETIME)<=CAST('2004-3-31' AS DATETIME))"),
        Inbound(" WHERE  Lst.单据编号>='R0301' "),
        Inbound(" WHERE  Lst.单据编号<='R0399' "),
        Inbound(" WHERE  (Lst.单据编号>='R0301' And Lst.单据编号<='R0399') "),
        Outbound(" WHERE  经手人='李强'"),
        Outbound(" WHERE  交接人='赵敏'"),
        Outbound(" WHERE  包装='箱' And 包装='箱'"),
        Inbound(
            " WHERE  类型='零售' And Lst.dpID=3 And Lst.ksID=7 And Lst.pjID=2 And ((CDATE(年份 & '-' & 月份 & '-' & "
            "日子)>=#2004-3-7#) And (CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2004-3-31#)) And (Lst.单据编号>='R0301' "
            "And Lst.单据编号<='R0399')  And 经手人='李强' And 交接人='赵敏' And 包装='箱' And 包装='箱'"),
        Inbound("", "HAVING (Sum(Rec.数量)>=1 And Sum(Rec.数量)<=12.5)"),
        Inbound("", "HAVING Sum(Rec.数量)<=12.5"),
        Inbound("", "HAVING Sum(Rec.数量)>=1"),
        Outbound("", " HAVING (Sum(Rec.除税金额)>=100 And Sum(Rec.除税金额)<=2000)"),
        Outbound("", " HAVING Sum(Rec.除税金额)<=2000"),
        Outbound("", " HAVING Sum(Rec.除税金额)>=100"),
        Outbound("", "HAVING Sum(Rec.数量)>=1 And Sum(Rec.除税金额)>=100"),
        Outbound(" WHERE  Lst.dpID=3",
                 "HAVING (Sum(Rec.数量)>=1 And Sum(Rec.数量)<=5) And (Sum(Rec.除税金额)>=100 And "
                 "Sum(Rec.除税金额)<=2000)"),
    };
}

}  // namespace kpTables::sql::parse
