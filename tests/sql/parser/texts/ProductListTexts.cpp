// The products that occur in a source.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

std::vector<std::string> ProductListTexts() {
    return {
        "Select * From 商品设置 Where pdID in (SELECT pdID FROM 仓库盘点表 Where True ) Order by ClassCode,商品编号",
        "Select * From 商品设置 Where pdID in (SELECT pdID FROM 仓库盘点表 Where True  And (月份>=1 And 月份<=3) And "
        "dpID=2) Order by ClassCode,商品编号",
        "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True  And 月份<=5) Order by "
        "ClassCode,商品编号",
        "Select * From 商品设置 Where pdID in (Select pdID From 入库记录 Where BillID in (Select billID From 入库目录 "
        "Where "
        "True )) Order by ClassCode,商品编号",
        "Select * From 商品设置 Where pdID in (Select pdID From 入库记录 Where BillID in (Select billID From 入库目录 "
        "Where "
        "True  And 月份>=3 And dpID=2 And ksID=7 And (单据编号>='R01' And 单据编号<='R99') )) Order by "
        "ClassCode,商品编号",
        "Select * From 商品设置 Where pdID in (Select pdID From 出库记录 Where BillID in (Select billID From 出库目录 "
        "Where "
        "True  And 编号<='C99' )) Order by ClassCode,商品编号",
        "Select * From 商品设置 Where pdID in (Select pdID From 出库记录 Where BillID in (Select billID From 出库目录 "
        "Where "
        "True  And 编号>='C01' )) Order by ClassCode,商品编号",
        "Select * From 商品设置 Where pdID in (Select pdID From 成本记录 Where CostID in (Select CostID From 成本目录 "
        "Where "
        "True  And (月份>=1 And 月份<=3) And dpID=2)) Order by ClassCode,商品编号",
    };
}

}  // namespace kpTables::sql::parse
