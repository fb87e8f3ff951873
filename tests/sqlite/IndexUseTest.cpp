// Every index of a book costs something at each row that is entered, so each must serve something that is asked.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "QueryPlan.h"
#include "TestBook.h"
#include "TestDatabase.h"
#include "engines/sqlite/BookFile.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::sqlite {
namespace {

using namespace test;

struct IndexUse {
    const char* index;  ///< a table and its index
    const char* text;   ///< what is faster with it
};

constexpr IndexUse kUses[] = {
    {"仓库设置.仓库名称", "Select * From 仓库设置 Where 仓库名称='东库'"},
    {"厂商资料.单位名称", "Select * From 厂商资料 Where 单位名称＝'华新'"},
    {"客户资料.单位名称", "Select * From 客户资料 Where 单位名称＝'城建'"},
    {"商品设置.商品条码", "Select * From 商品设置 Where 商品条码='6900000000017'"},
    {"商品设置.输入简码", "Select * From 商品设置 Where 输入简码='SN'"},
    {"商品设置.商品编号", "Select * From 商品设置 Where 商品编号='01001'"},
    {"商品设置.商品名称", "Select * From 商品设置 Where 商品名称='水泥'"},
    {"商品设置.ClassCode", "Select * from 商品设置 Where ClassCode='01'"},
    {"入库目录.仓库月份",
     "Select pdID,Avg(除税单价) As 单价,Sum(数量) As 数量,Sum(除税金额) As 金额 From 入库记录 Where BillID in (Select "
     "BillID From 入库目录 Where dpID=1 And 月份=3) Group by pdID"},
    {"入库目录.dpID",
     "SELECT Lst.单据编号, Sum(Rec.数量) AS 数量, Lst.BillID FROM 入库目录 AS Lst LEFT JOIN 入库记录 AS Rec ON "
     "Lst.BillID = Rec.BillID WHERE Lst.dpID=1 GROUP BY Lst.月份, Lst.单据编号, Lst.BillID, Rec.dpID Order by "
     "Lst.月份,Lst.单据编号 "},
    {"入库目录.日期", "Select * From 入库目录 Where CDATE(年份 & '-' & 月份 & '-' & 日子)=#2004-3-7#"},
    {"入库目录.月份单据", "Select * From 入库目录 Where 月份=3 And 单据类型='调拨单' And 单据编号='D-7'"},
    {"入库目录.单据编号", "Select * From 入库目录 Where (单据编号>='R1' And 单据编号<='R2')"},
    {"入库目录.ksID",
     "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,"
     "Prod.计量单位,Prod.进位方法 FROM ((入库记录 AS Rec INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER "
     "JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID  Where  Lst.KSID=5 "
     "Order by Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 "},
    {"入库记录.BillID", "Select Sum(除税金额) As 金额 From 入库记录 Where BillID=7"},
    {"入库记录.pdID", "Select Top 2  * From 入库记录 Where pdID=5 And 仓库=1"},
    {"出库目录.仓库月份",
     "Select pdID,Avg(除税单价) As 单价,Sum(数量) As 数量,Sum(除税金额) As 金额 From 出库记录 Where BillID in (Select "
     "BillID From 出库目录 Where dpID=1 And 月份=3) Group by pdID"},
    {"出库目录.dpID",
     "SELECT Lst.单据编号, Sum(Rec.数量) AS 数量, Lst.BillID FROM 出库目录 AS Lst LEFT JOIN 出库记录 AS Rec ON "
     "Lst.BillID = Rec.BillID WHERE Lst.dpID=1 GROUP BY Lst.月份, Lst.单据编号, Lst.BillID, Rec.dpID Order by "
     "Lst.月份,Lst.单据编号 "},
    {"出库目录.日期", "Select * From 出库目录 Where CDATE(年份 & '-' & 月份 & '-' & 日子)=#2004-3-7#"},
    {"出库目录.月份单据", "Select * From 出库目录 Where 月份=3 And 单据类型='调拨单' And 单据编号='D-7'"},
    {"出库目录.单据编号", "Select * From 出库目录 Where (单据编号>='C1' And 单据编号<='C2')"},
    {"出库目录.ksID",
     "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,"
     "Prod.计量单位,Prod.进位方法 FROM ((出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER "
     "JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID  Where  Lst.KSID=5 "
     "Order by Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 "},
    {"出库记录.BillID", "Select Sum(除税金额) As 金额 From 出库记录 Where BillID=7"},
    {"出库记录.pdID",
     "SELECT Sum(Rec.数量) AS 数量, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 FROM "
     "出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID Where  Lst.月份=3 And Lst.dpID=1 And "
     "Rec.pdID=5"},
    {"成本目录.仓库月份",
     "Select pdID,Avg(单价) As 单价,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where CostID in (Select CostID "
     "From 成本目录 Where dpID=1 And 月份=3) Group by pdID"},
    {"成本记录.CostID",
     "Select pdID,Avg(单价) As 单价,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where CostID in (Select CostID "
     "From 成本目录 Where dpID=1 And 月份=3) Group by pdID"},
    {"仓库余额表.仓库月份", "Select * From 仓库余额表 Where dpID=1 And 月份=3"},
    {"仓库余额表.年份月份", "Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份"},
    {"仓库余额表.pdID",
     "SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn Where  bn.月份=3 And "
     "bn.dpID=1 And bn.pdID=5"},
    {"仓库盘点表.仓库月份",
     "Select * From 商品设置 Where pdID in (SELECT pdID FROM 仓库盘点表 Where True  And 月份=3 And dpID=1) Order by "
     "ClassCode,商品编号"},
    {"销售汇总记录.ListID",
     "Select * From 销售汇总记录 Where ListID in (Select ID As ListID From 销售汇总目录 Where 月份=3 And dpID=1)"},
    {"操作员.姓名", "Select * From 操作员 Where姓名='朱琳'"},
    {"Log.Operator", "Select * From Log Where Operator='朱琳'"},
    {"Log.logDate", "Select * From Log Order by logDate DESC"},
    {"Header.TableFlag", "Select * From Header Where Table='入库' And Flag='Default'"},
    {"派遣目录.日期",
     "SELECT Lst.BillID As BillID, Rec.* FROM 派遣目录 AS Lst INNER JOIN 派遣记录 AS Rec ON Lst.BillID = Rec.BillID "
     "Where ((CDATE(年份 & '-' & 月份 & '-' & 日子)=#2004-3-7#))ORDER BY Lst.年份"},
    {"派遣记录.BillID",
     "SELECT Lst.BillID As BillID, Rec.* FROM 派遣目录 AS Lst INNER JOIN 派遣记录 AS Rec ON Lst.BillID = Rec.BillID "
     "Where ((CDATE(年份 & '-' & 月份 & '-' & 日子)=#2004-3-7#))ORDER BY Lst.年份"},
    {"工资表.月份", "Select * From 工资表 Where 月份=3"},
};

class IndexUseTest : public testing::Test {
protected:
    IndexUseTest() {
        CreateBook(directory_.File("book"));
        session_ = std::make_unique<TestDatabase>(OpenBookFile(directory_.File("book"), {}));
        session_->GetCatalog().Refresh();
    }

    std::string PlanOf(const char* text) const {
        const sql::StatementPtr statement = sql::parse::Parse(text);
        return test::PlanOf(
            session_->GetDatabase(),
            sql::Translate(*statement, session_->GetCatalog(), sql::print::sqlite::SqliteEngine()).text);
    }
    static bool Uses(const std::string& plan, const std::string& index) {
        const std::string use = "INDEX " + index;
        return (plan + ";").find(use + ";") != std::string::npos || plan.find(use + " ") != std::string::npos;
    }

    TemporaryDirectory directory_;
    std::unique_ptr<TestDatabase> session_;
};

TEST_F(IndexUseTest, EachServesAQuestion) {
    if (const std::string reason = test::OtherPlans(); !reason.empty()) GTEST_SKIP() << reason;
    for (const auto& [index, text] : kUses) {
        const auto plan = PlanOf(text);
        EXPECT_TRUE(Uses(plan, index)) << index << " is not used by " << text << ": " << plan;
    }
}

TEST_F(IndexUseTest, TheBookHasNoOthers) {
    std::set<std::string> used;
    for (const IndexUse& use : kUses) used.insert(use.index);
    std::set<std::string> made;
    PreparedStatement indexes =
        session_->GetDatabase().Prepare("SELECT name FROM sqlite_schema WHERE type = 'index' AND sql IS NOT NULL");
    while (indexes.Step()) made.emplace(indexes.Text(0));
    EXPECT_EQ(made, used);
}

}  // namespace
}  // namespace kpTables::sqlite
