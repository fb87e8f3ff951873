// Lines, totals, audit and deletion of bills; bill numbers and counts.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

namespace {

const std::string kInboundLines =
    "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Ks.企业名称 "
    "FROM ((入库记录 AS Rec INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON "
    "Rec.dpID = Dp.dpID) LEFT JOIN 厂商资料 AS Ks ON Lst.ksID = Ks.KSID ";
const std::string kOutboundLines =
    "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, ks.企业名称 "
    "FROM ((出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON "
    "Rec.dpID = Dp.dpID) LEFT JOIN 客户资料 AS KS ON Lst.ksID = KS.ksID ";
const std::string kPartnerSelect =
    "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, "
    "Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法 ";
const std::string kPartnerInbound =
    "FROM ((入库记录 AS Rec INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON "
    "Rec.dpID = Dp.dpID) LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID ";
const std::string kPartnerOutbound =
    "FROM ((出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON "
    "Rec.dpID = Dp.dpID) LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID ";
const std::string kOrder = " Order by Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ";

std::vector<std::string> LineTexts() {
    return {
        kInboundLines + kOrder,
        kInboundLines + " Where  Lst.dpID=3" + kOrder,
        kInboundLines + " Where  Rec.pdID=5" + kOrder,
        kInboundLines + " Where  Lst.dpID=3 And Rec.pdID=5" + kOrder,
        kOutboundLines + kOrder,
        kOutboundLines + " Where  Lst.dpID=3" + kOrder,
        kOutboundLines + " Where  Rec.pdID=5" + kOrder,
        kOutboundLines + " Where  Lst.dpID=3 And Rec.pdID=5" + kOrder,
        kPartnerSelect + kPartnerInbound + kOrder,
        kPartnerSelect + kPartnerInbound + " Where  Lst.KSID=7" + kOrder,
        kPartnerSelect + kPartnerOutbound + kOrder,
        kPartnerSelect + kPartnerOutbound + " Where  Lst.KSID=7" + kOrder,
    };
}

std::vector<std::string> OneBillTexts() {
    return {
        "Select Distinct 经手人 From 入库记录 Order by 经手人",
        "Select Distinct 经手人 From 出库记录 Order by 经手人",
        "Select Distinct 交接人 From 入库记录 Order by 交接人",
        "Select Distinct 交接人 From 出库记录 Order by 交接人",
        "Select Distinct 包装 From 入库记录 Order by 包装",
        "Select Distinct 包装 From 出库记录 Order by 包装",
        "Select Distinct 货位 From  入库记录 Order by 货位",
        "Select Distinct 货位 From  出库记录 Order by 货位",
        "Select Sum(除税金额) As 金额 From 入库记录 Where BillID=5",
        "Select Sum(除税金额) As 金额 From 出库记录 Where BillID=5",
        "Select Sum(除税金额) As 金额 From 成本记录 Where BillID=5",
        "Select Sum(数量) As 数量 From 入库记录 Where BillID=5",
        "Select Sum(数量) As 数量 From 出库记录 Where BillID=5",
        "Update 入库目录 Set 审核员='王芳',审核日期=#2004-3-7# Where BillID=5",
        "Update 出库目录 Set 审核员='王芳',审核日期=#2004-3-7 12:30:00# Where BillID=-2147483648",
        "Delete From 入库目录 Where BillID=5",
        "Delete From 入库记录 Where BillID=5",
        "Delete From 出库目录 Where BillID=5",
        "Delete From 出库记录 Where BillID=5",
    };
}

std::vector<std::string> NumberTexts() {
    return {
        "Select BillID From 入库目录 Where 月份=3 And dpID=2",
        "Select BillID from 入库目录 Where 月份=3",
        "Select BillID From 出库目录 Where 月份=3 And dpID=2 And 单据类型='调拨单'",
        "Select BillID from 出库目录 Where 月份=3 And 单据类型='调拨单'",
        "Select * From 入库目录 Where ((月份>=0 And 日子>=0) And (月份<=12 And 日子<=31))",
        "Select * From 出库目录 Where ((月份>=2 And 日子>=15) And (月份<=0 And 日子<=31 And 类型='零售 '))",
        "Select * From 出库目录 Where billid=5",
        "Select * From 入库目录 Where billid=5",
        "Select * From 入库目录 Where 月份=3 And 单据类型='调拨单' And 单据编号='D0301'",
        "Select * From 出库目录 Where 月份=3 And 单据类型='调拨单' And 单据编号='D0301'",
        "Select * From 入库目录 Where billID=5",
    };
}

}  // namespace

std::vector<std::string> BillTexts() {
    std::vector<std::string> texts = LineTexts();
    for (std::string& text : OneBillTexts()) texts.push_back(std::move(text));
    for (std::string& text : NumberTexts()) texts.push_back(std::move(text));
    return texts;
}

}  // namespace kpTables::sql::parse
