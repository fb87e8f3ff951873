// Work orders and the drivers' pay sheet.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

namespace {

const std::string kOrders =
    "SELECT Lst.BillID As BillID, Lst.年份, Lst.月份, Lst.日子, Lst.单据编号, Lst.录入员, Lst.录入日期, Lst.车牌号, "
    "Lst.司机, Lst.跟车人, Lst.货款,Lst.外用车, Lst.违章, Lst.部门ID, Lst.说明, Lst.审核员, Lst.审核日期, Rec.*, "
    "Supp.企业名称 AS 发货单位, Cust.企业名称 AS 收货单位, Pd.商品名称, Pd.型号, Pd.规格, Pd.计量单位, Pd.进位方法 "
    "FROM "
    "商品设置 AS Pd INNER JOIN (客户资料 AS Cust INNER JOIN (厂商资料 AS Supp INNER JOIN (派遣目录 AS Lst INNER JOIN "
    "派遣记录 AS Rec ON Lst.BillID = Rec.BillID) ON Supp.KSID = Rec.厂商ID) ON Cust.KSID = Rec.客户ID) ON Pd.pdID = "
    "Rec.pdID ";
const std::string kOrder = "ORDER BY Lst.年份, Lst.月份, Lst.日子, Lst.单据编号";

const std::string kPay =
    "SELECT s.姓名, Sum(s.总收入) AS 总收入, Sum(s.油费) AS 油费, Sum(s.外加油费) AS 外加油费,Sum(s.过路费) As "
    "过路费,Sum(s.装卸费) AS 装卸费, Sum(s.折旧) AS 折旧, Sum(s.保险) AS 保险, Sum(s.利润) AS 利润, Sum(s.税金) AS "
    "税金, Sum(s.养路费) AS 养路费, Sum(s.装卸工资) AS 装卸工资, Sum(s.费用1) AS 费用1, Sum(s.费用2) AS 费用2, "
    "Sum(s.费用3) AS 费用3, Sum(s.总费用) AS 总费用, Sum(s.其它1) AS 其它1, Sum(s.其它2) AS 其它2, Sum(s.其它3) AS "
    "其它3, Sum(s.应付) AS 应付, Sum(s.所得税) AS 所得税, Sum(s.电话费) AS 电话费, Sum(s.扣款1) AS 扣款1, "
    "Sum(s.扣款2) AS 扣款2, Sum(s.扣款3) AS 扣款3, Sum(s.实发工资) AS 实发工资, s.Flag, s.备注 FROM 工资表 AS s ";

}  // namespace

std::vector<std::string> HaulageTexts() {
    return {
        kOrders + kOrder,
        kOrders + " Where (( (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) ))" + kOrder,
        kOrders +
            " Where (( CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
            "DATETIME)<=CAST('2004-3-31' AS DATETIME)))" +
            kOrder,
        kOrders +
            " Where (( Lst.单据编号>='P01'  And Lst.车牌号='沪A12345' And Lst.司机='周勇' And Lst.跟车人='吴军' "
            "And Lst.货款>=500 And Lst.外用车<0 And Lst.违章<0 And Rec.厂商ID=7 And Rec.配送单号='N1' And "
            "Rec.客户ID=8 And Rec.送货地点='工地'))" +
            kOrder,
        kOrders + " Where (( Lst.外用车<0))" + kOrder,
        "SELECT Lst.司机 As 姓名, Sum(Lst.货款) As 总收入 FROM 派遣目录 AS Lst Where (Lst.月份) = 3 GROUP BY Lst.司机",
        kPay + " GROUP BY s.姓名, s.Flag, s.备注",
        kPay + " Where s.月份<=6 GROUP BY s.姓名, s.Flag, s.备注",
        "Select * From 工资表 Where 月份=3",
        "Delete From 工资表 Where 月份=3",
    };
}

}  // namespace kpTables::sql::parse
