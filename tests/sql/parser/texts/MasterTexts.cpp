// Reference lists, lookups and the product catalogue.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

namespace {

std::vector<std::string> ListTexts() {
    return {
        "Select * From 厂商分类 Order by ClassCode",
        "Select * From 厂商分类 Where ClassID=7",
        "Select * From 厂商资料 Order by ClassCode",
        "Select * From 厂商资料 Where ksID=7",
        "Select * From 客户分类 Order by ClassCode",
        "Select * From 客户分类 Where ClassID=7",
        "Select * From 客户资料 Order by ClassCode",
        "Select * From 客户资料 Where ksID=7",
        "Select * From 项目分类 Order by ClassCode",
        "Select * From 项目分类 Where ClassID=7",
        "Select * From 项目设置 Order by ClassCode,项目编号",
        "Select * From 项目设置 Where 项目ID=7",
        "Select * From 部门分类 Order by ClassCode",
        "Select * From 部门分类 Where ClassID=7",
        "Select * From 雇员资料 Order by ClassCode",
        "Select * From 雇员资料 Where 雇员ID=7",
        "Select * From 仓库设置 order by dpID",
        "Select Distinct dpID From 仓库余额表 Where 月份=3 Order by dpID",
        "Select * From 厂商资料 Order by ksID",
        "Select * From 厂商资料 Where ksID in (Select ksID From 入库目录 Where 月份=-1) Order by ClassCode,ksID",
        "Select * From 客户资料 Order by ksID",
        "Select * From 客户资料 Where ksID in (Select ksID From 出库目录 Where 月份=3) Order by ClassCode,ksID",
        "Select * From 项目设置 Order by 项目ID",
        "Select * From 项目设置 Where (项目ID in (Select 项目ID From 入库目录 Where 月份=3)) or (项目ID in (Select "
        "项目ID "
        "From 出库目录 Where 月份=3)) Order by ClassCode,ksID",
    };
}

std::vector<std::string> LookupTexts() {
    return {
        "Select 仓库名称 From 仓库设置 Where dpID=3",
        "Select * From 厂商资料 Where 单位名称＝'大兴建材'",
        "Select * From 客户资料 Where 单位名称＝'大兴建材'",
        "Select * From 仓库设置 Where 仓库名称='一号仓库'",
        "Select * from 仓库设置",
        "Select * From 收付款方式",
        "Delete From 客户分类 Where ClassID=5",
        "Delete From 厂商分类 Where ClassID=5",
        "Delete From 项目分类 Where ClassID=5",
    };
}

std::vector<std::string> ProductTexts() {
    return {
        "Select * from 商品分类  Order by ClassCode",
        "Select * from 商品分类 Where ClassCode='01' Order by ClassCode",
        "Select * From 商品设置 Where  pdID=5",
        "Select * From 商品设置 Where  pdID=5 Order by 商品编号",
        "Select * From 商品设置 Where  pdID=5And  ClassCode='01'",
        "Select * From 商品设置 Where  pdID=5And  ClassCode='01' Order by 商品编号",
        "Select Distinct 生产厂家 From 商品设置 Order by 生产厂家",
        "Select Distinct 存放位置 From 商品设置 Order by 存放位置",
        "Select pdID From 仓库余额表 Where dpID=0",
        "Select pdID From 仓库余额表 Where dpID=3 And dpID=3",
        "Select * From 商品设置 Where pdID=5",
        "Select * From 商品分类 Where ClassCode='01'",
        "Select * from 商品设置 Where ClassCode='01'",
        "Select * from 商品设置",
        "Select * From 商品设置 Where 商品条码='6901234567892'",
        "Select * From 商品设置 Where 输入简码='SN'",
        "Select * From 商品设置 Where 商品编号='0101'",
        "Select * From 商品设置 Where 商品名称='水泥'",
        "SELECT TOP 2 R.单价, CDate(L.年份 & '-' & L.月份 & '-' & L.日子) AS 日期 "
        "FROM (出库目录 AS L INNER JOIN 出库记录 AS R ON L.BillID = R.BillID) INNER JOIN 客户资料 AS C ON L.ksID = "
        "C.KSID "
        "WHERE ((R.pdID=5) AND (C.KSID=7) AND CDate(L.年份 & '-' & L.月份 & '-' & L.日子)<'2004-3-7') "
        "ORDER BY CDate(L.年份 & '-' & L.月份 & '-' & L.日子)",
    };
}

}  // namespace

std::vector<std::string> MasterTexts() {
    std::vector<std::string> texts = ListTexts();
    for (std::string& text : LookupTexts()) texts.push_back(std::move(text));
    for (std::string& text : ProductTexts()) texts.push_back(std::move(text));
    return texts;
}

}  // namespace kpTables::sql::parse
