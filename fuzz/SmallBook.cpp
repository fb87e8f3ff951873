#include "SmallBook.h"

#include <string_view>

#include "engines/common/EngineBook.h"
#include "engines/sqlite/BookFile.h"

namespace kpTables::fuzz {

namespace {

// Quarters, so that sums of doubles are exact in any order. A bill without lines, lines without a bill, ids that name
// nothing, and Nulls wherever a column takes them.
constexpr std::string_view kRows[] = {
    "Insert Into 仓库设置 (dpID,仓库名称,结帐标志,结帐日期) Values (1,'东库',True,#2004-3-31#)",
    "Insert Into 仓库设置 (dpID,仓库名称) Values (2,'西库')",
    "Insert Into 仓库设置 (dpID) Values (3)",
    "Insert Into 厂商资料 (KSID,ClassCode,企业名称,单位名称) Values (1,'01','甲厂','a')",
    "Insert Into 厂商资料 (KSID,ClassCode,企业名称) Values (2,'02','A')",
    "Insert Into 项目设置 (项目ID,项目编号,项目名称,ksID) Values (1,'P1','桥',1)",
    "Insert Into 项目设置 (项目ID,项目编号,ksID) Values (2,'p1',5)",
    "Insert Into 商品设置 (pdID,商品名称,商品编号,ClassCode,默认单价) Values (1,'水泥','01001','01',30)",
    "Insert Into 商品设置 (pdID,商品名称,商品编号,ClassCode,默认单价) Values (2,'a','01002','01',0.25)",
    "Insert Into 商品设置 (pdID,商品名称,ClassCode) Values (3,'A','02')",
    "Insert Into 入库目录 (BillID,年份,月份,日子,单据类型,类型,单据编号,dpID,ksID,pjID,录入日期) "
    "Values (1,2004,3,7,'采购','现购','A1',1,1,1,#2004-3-8#)",
    "Insert Into 入库目录 (BillID,年份,月份,日子,单据类型,单据编号,dpID,ksID) Values (2,2004,3,17,'采购','A2',1,2)",
    "Insert Into 入库目录 (BillID,年份,月份,日子,单据类型,类型,单据编号,dpID,pjID) "
    "Values (3,2004,12,1,'退货','a','A3',2,2)",
    "Insert Into 入库目录 (BillID,年份,月份,单据类型,单据编号,dpID,ksID) Values (4,2004,4,'采购','a1',9,9)",
    "Insert Into 入库目录 (BillID,年份,日子,单据编号,类型) Values (5,2003,31,'B','A')",
    "Insert Into 入库目录 (BillID,年份,月份,日子,单据类型,dpID) Values (6,2003,12,31,'采购',3)",
    "Insert Into 入库记录 (BillID,pdID,dpID,数量,单价,金额,除税金额,经手人,仓库) Values (1,1,1,2.5,4,10,8.5,'张三',1)",
    "Insert Into 入库记录 (BillID,pdID,dpID,数量,单价,金额,除税金额,经手人,仓库) Values (1,2,1,1,0.0625,1,0.0625,'a',2)",
    "Insert Into 入库记录 (BillID,pdID,dpID,数量,金额,除税金额,经手人) Values (1,1,2,-0.25,3,2.5,'A')",
    "Insert Into 入库记录 (BillID,pdID,dpID,数量,金额) Values (2,1,1,4,12.5)",
    "Insert Into 入库记录 (BillID,pdID,dpID,数量,金额,经手人) Values (3,3,2,Null,Null,'张三')",
    "Insert Into 入库记录 (BillID,pdID,dpID,金额) Values (3,Null,2,7)",
    "Insert Into 入库记录 (BillID,pdID,dpID,数量,金额) Values (4,7,Null,3,9.25)",
    "Insert Into 入库记录 (BillID,pdID,dpID,数量,金额) Values (9,1,1,5,15)",
    "Insert Into 入库记录 (BillID,pdID,数量) Values (Null,2,6)",
    "Insert Into 仓库余额表 (年份,月份,pdID,dpID,上期库存数量,上期库存金额,备注) Values (2004,3,1,1,10,2000,'a')",
    "Insert Into 仓库余额表 (年份,月份,pdID,dpID,上期库存数量,上期库存金额) Values (2004,3,2,1,0.5,100.05)",
    "Insert Into 仓库余额表 (年份,月份,pdID,dpID,上期库存数量,上期库存金额,备注) Values (2004,4,1,1,12,2400,'A')",
    "Insert Into 仓库余额表 (年份,月份,pdID,dpID,上期库存数量) Values (2004,4,9,Null,1)",
};

test::TestDatabase Made() {
    test::TestDatabase book(engines::sqlite::OpenMemory());
    engines::CreateBookTables(*book.GetExecutor());
    for (const std::string_view row : kRows) book.Execute(row);
    return book;
}

}  // namespace

const test::TestDatabase& SmallBook() {
    static const test::TestDatabase book = Made();
    return book;
}

}  // namespace kpTables::fuzz
