// The month-end closing.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

std::vector<std::string> ClosingTexts() {
    return {
        "Select * From 仓库余额表 Where dpID=3 And 月份=2",
        "Select pdID,Avg(除税单价) As 单价,Sum(数量) As 数量,Sum(除税金额) As 金额 From 入库记录 Where BillID in "
        "(Select "
        "BillID From 入库目录 Where dpID=3 And 月份=2) Group by pdID",
        "Select pdID,Avg(除税单价) As 单价,Sum(数量) As 数量,Sum(除税金额) As 金额 From 出库记录 Where BillID in "
        "(Select "
        "BillID From 出库目录 Where dpID=3 And 月份=2) Group by pdID",
        "Select pdID,Sum(数量) As 数量,Sum(除税金额) As 金额 From 入库记录 Where BillID in (Select BillID From "
        "入库目录 "
        "Where dpID=3 And 月份<=2) Group by pdID",
        "Select pdID,Sum(数量) As 数量,Sum(除税金额) As 金额 From 出库记录 Where BillID in (Select BillID From "
        "出库目录 "
        "Where dpID=3 And 月份<=2) Group by pdID",
        "Select pdID,Avg(单价) As 单价,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where CostID in (Select "
        "CostID "
        "From 成本目录 Where dpID=3 And 月份=2) Group by pdID",
        "Select pdID,Avg(单价) As 单价,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where CostID in (Select "
        "CostID "
        "From 成本目录 Where dpID=3 And 月份<=2) Group by pdID",
        "Select * From 仓库余额表 Where 月份=2 And dpID=3",
        "Update 仓库设置 Set 结帐日期='2004-3-31',结帐标志=1 Where dpID=3",
        "Update 仓库设置 Set 结帐日期='2004-3-31',结帐标志=0 Where dpID=3",
        "Update 仓库设置 Set 结帐日期='2004-3-31',结帐标志=True Where dpID=3",
        "Update 仓库设置 Set 结帐日期='2004-3-31',结帐标志=False Where dpID=3",
        "Select * from 出库记录 Where billID in (Select billID From 出库目录 Where 月份=2 And dpID=3)",
        "Select * From 销售汇总记录 Where ListID in (Select ID As ListID From 销售汇总目录 Where 月份=2 And dpID=3)",
    };
}

}  // namespace kpTables::sql::parse
