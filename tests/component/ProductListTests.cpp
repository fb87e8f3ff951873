// The products that occur in a source, and one product's balance and cost records.
#include <gtest/gtest.h>

#include "StatementCase.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(ProductList, Periods) {
    struct Case {
        std::int16_t begin;
        std::int16_t end;
        const char* statement;
    };
    // Equal months stay a range; a negative month leaves both sides open.
    const Case cases[] = {
        {2, 5,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True  And (月份>=2 And 月份<=5)) "
         "Order "
         "by ClassCode,商品编号"},
        {1, 12,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True  And (月份>=1 And 月份<=12)) "
         "Order by ClassCode,商品编号"},
        {5, 2,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True  And (月份>=5 And 月份<=2)) "
         "Order "
         "by ClassCode,商品编号"},
        {3, 3,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True  And (月份>=3 And 月份<=3)) "
         "Order "
         "by ClassCode,商品编号"},
        {0, 5,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True  And 月份<=5) Order by "
         "ClassCode,商品编号"},
        {2, 0,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True  And 月份>=2) Order by "
         "ClassCode,商品编号"},
        {0, 0,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True ) Order by ClassCode,商品编号"},
        {-1, 5,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True ) Order by ClassCode,商品编号"},
        {2, -1,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True ) Order by ClassCode,商品编号"},
        {-1, 0,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True ) Order by ClassCode,商品编号"},
        {0, -1,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True ) Order by ClassCode,商品编号"},
        {-3, -3,
         "Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True ) Order by ClassCode,商品编号"},
    };
    for (const Case& each : cases) {
        const std::string name = std::to_string(each.begin) + " to " + std::to_string(each.end);
        const StatementCase rows[] = {{name.c_str(),
                                       [&](CTables& t) { t.rs商品列表(0, 0, each.begin, each.end, "仓库"); },
                                       {Executed(each.statement)}}};
        ExpectStatements(rows);
    }
}

TEST(ProductList, Sources) {
    const StatementCase cases[] = {
        {"stocktaking, all",
         [](CTables& t) { t.rs商品列表(0, 0, 0, 0, "盘点"); },
         {Executed("Select * From 商品设置 Where pdID in (SELECT pdID FROM 仓库盘点表 Where True ) Order by "
                   "ClassCode,商品编号")}},
        {"stocktaking knows neither partner nor bill number",
         [](CTables& t) { t.rs商品列表(7, 8, 2, 5, "盘点", "A", "B"); },
         {Executed("Select * From 商品设置 Where pdID in (SELECT pdID FROM 仓库盘点表 Where True  And (月份>=2 And "
                   "月份<=5) And dpID=7) Order by ClassCode,商品编号")}},
        {"balance knows neither partner nor bill number",
         [](CTables& t) { t.rs商品列表(7, 8, 2, 0, "仓库", "A", "B"); },
         {Executed("Select * From 商品设置 Where pdID in (Select pdID From 仓库余额表 Where True  And 月份>=2 And "
                   "dpID=7) Order by ClassCode,商品编号")}},
        {"inbound, all",
         [](CTables& t) { t.rs商品列表(0, 0, 0, 0, "入库"); },
         {Executed(
             "Select * From 商品设置 Where pdID in (Select pdID From 入库记录 Where BillID in (Select billID From "
             "入库目录 Where True )) Order by ClassCode,商品编号")}},
        {"inbound, everything",
         [](CTables& t) { t.rs商品列表(7, 8, 2, 5, "入库", "A1", "B2"); },
         {Executed(
             "Select * From 商品设置 Where pdID in (Select pdID From 入库记录 Where BillID in (Select billID From "
             "入库目录 Where True  And (月份>=2 And 月份<=5) And dpID=7 And ksID=8 And (单据编号>='A1' And "
             "单据编号<='B2') )) Order by ClassCode,商品编号")}},
        {"outbound, all, negative ids",
         [](CTables& t) { t.rs商品列表(-1, -1, 0, 0, "出库", "", ""); },
         {Executed(
             "Select * From 商品设置 Where pdID in (Select pdID From 出库记录 Where BillID in (Select billID From "
             "出库目录 Where True )) Order by ClassCode,商品编号")}},
        {"outbound, everything",
         [](CTables& t) { t.rs商品列表(1, 1, 0, 5, "出库", "A1", "B2"); },
         {Executed(
             "Select * From 商品设置 Where pdID in (Select pdID From 出库记录 Where BillID in (Select billID From "
             "出库目录 Where True  And 月份<=5 And dpID=1 And ksID=1 And (单据编号>='A1' And 单据编号<='B2') )) "
             "Order by ClassCode,商品编号")}},
        {"cost, all",
         [](CTables& t) { t.rs商品列表(0, 0, 0, 0, "成本"); },
         {Executed(
             "Select * From 商品设置 Where pdID in (Select pdID From 成本记录 Where CostID in (Select CostID From "
             "成本目录 Where True )) Order by ClassCode,商品编号")}},
        {"cost knows neither partner nor bill number",
         [](CTables& t) { t.rs商品列表(7, 8, 3, 3, "成本", "A", "B"); },
         {Executed(
             "Select * From 商品设置 Where pdID in (Select pdID From 成本记录 Where CostID in (Select CostID From "
             "成本目录 Where True  And (月份>=3 And 月份<=3) And dpID=7)) Order by ClassCode,商品编号")}},
        {"an unknown source",
         [](CTables& t) { t.rs商品列表(7, 8, 2, 5, "调拨", "A", "B"); },
         {Executed("Select * From 商品设置 Where pdID in () Order by ClassCode,商品编号")}},
        {"no source",
         [](CTables& t) { t.rs商品列表(0, 0, 0, 0, ""); },
         {Executed("Select * From 商品设置 Where pdID in () Order by ClassCode,商品编号")}},
        {"a blank behind makes another source",
         [](CTables& t) { t.rs商品列表(0, 0, 0, 0, "入库 "); },
         {Executed("Select * From 商品设置 Where pdID in () Order by ClassCode,商品编号")}},
    };
    ExpectStatements(cases);
}

TEST(ProductList, BillNumbers) {
    const StatementCase cases[] = {
        {"both",
         [](CTables& t) { t.rs商品列表(0, 0, 0, 0, "入库", "9", "10"); },
         {Executed(
             "Select * From 商品设置 Where pdID in (Select pdID From 入库记录 Where BillID in (Select billID From "
             "入库目录 Where True  And (单据编号>='9' And 单据编号<='10') )) Order by ClassCode,商品编号")}},
        {"the first names another column",
         [](CTables& t) { t.rs商品列表(0, 0, 0, 0, "入库", "A1"); },
         {Executed(
             "Select * From 商品设置 Where pdID in (Select pdID From 入库记录 Where BillID in (Select billID From "
             "入库目录 Where True  And 编号>='A1' )) Order by ClassCode,商品编号")}},
        {"so does the last",
         [](CTables& t) { t.rs商品列表(0, 3, 0, 0, "出库", "", "B2"); },
         {Executed(
             "Select * From 商品设置 Where pdID in (Select pdID From 出库记录 Where BillID in (Select billID From "
             "出库目录 Where True  And ksID=3 And 编号<='B2' )) Order by ClassCode,商品编号")}},
        {"blanks and quotes stay",
         [](CTables& t) { t.rs商品列表(0, 0, 0, 0, "出库", " ", "O'X"); },
         {Executed(
             "Select * From 商品设置 Where pdID in (Select pdID From 出库记录 Where BillID in (Select billID From "
             "出库目录 Where True  And (单据编号>=' ' And 单据编号<='O'X') )) Order by ClassCode,商品编号")}},
    };
    ExpectStatements(cases);
}

const std::string kBalance =
    "SELECT pdID,年份,月份,Avg(上期库存单价) As 上期库存单价,Sum(上期库存数量) As 上期库存数量,Sum(上期库存金额) As "
    "上期库存金额,Avg(本期入库单价) As 本期入库单价,Sum(本期入库数量) As 本期入库数量,Sum(本期入库金额) As "
    "本期入库金额,Sum(累计入库数量) As 累计入库数量,Sum(累计入库金额) As 累计入库金额,Avg(本期出库单价) As "
    "本期出库单价,Sum(本期出库数量) As 本期出库数量,Sum(本期出库金额) As 本期出库金额,Sum(累计出库数量) As "
    "累计出库数量,Sum(累计出库金额) As 累计出库金额,Avg(本期库存单价) As 本期库存单价,Sum(本期库存数量) As "
    "本期库存数量,Sum(本期库存金额) As 本期库存金额 FROM 仓库余额表 WHERE 仓库余额表.pdID=";

TEST(ProductRecords, Balance) {
    const StatementCase cases[] = {
        {"all warehouses",
         [](CTables& t) { t.rs期初记录(0, 5); },
         {Executed(kBalance + "5 Group by pdID,年份,月份 Order by 年份,月份")}},
        {"negative warehouse, product 0",
         [](CTables& t) { t.rs期初记录(-1, 0); },
         {Executed(kBalance + "0 Group by pdID,年份,月份 Order by 年份,月份")}},
        {"a warehouse",
         [](CTables& t) { t.rs期初记录(1, -5); },
         {Executed(kBalance + "-5 And dpID=1 Group by pdID,年份,月份 Order by 年份,月份")}},
    };
    ExpectStatements(cases);
}

TEST(ProductRecords, Costs) {
    const StatementCase cases[] = {
        {"all warehouses",
         [](CTables& t) { t.rs成本记录(0, 5); },
         {Executed("Select 成本目录.*,成本目录.CostID as CostID,成本记录.* from 成本目录,成本记录 Where "
                   "成本目录.costid=成本记录.costid  And 成本记录.pdID=5 Order by 月份,成本目录.costID")}},
        {"negative warehouse, product 0",
         [](CTables& t) { t.rs成本记录(-1, 0); },
         {Executed("Select 成本目录.*,成本目录.CostID as CostID,成本记录.* from 成本目录,成本记录 Where "
                   "成本目录.costid=成本记录.costid  And 成本记录.pdID=0 Order by 月份,成本目录.costID")}},
        {"a warehouse",
         [](CTables& t) { t.rs成本记录(1, -5); },
         {Executed("Select 成本目录.*,成本目录.CostID as CostID,成本记录.* from 成本目录,成本记录 Where "
                   "成本目录.costid=成本记录.costid  And 成本目录.dpID=1 And 成本记录.pdID=-5 Order by "
                   "月份,成本目录.costID")}},
    };
    ExpectStatements(cases);
}

struct NamedQuery {
    const char* name;
    std::function<RecordsetPtr(CTables&)> run;
};
const NamedQuery kLists[] = {
    {"rs商品列表", [](CTables& t) { return t.rs商品列表(0, 0, 0, 0, "入库"); }},
    {"rs期初记录", [](CTables& t) { return t.rs期初记录(0, 1); }},
    {"rs成本记录", [](CTables& t) { return t.rs成本记录(0, 1); }},
};

TEST(ProductRecords, HandOutTheConnectionsRows) {
    for (const auto& each : kLists) ExpectHandsOut(each.name, each.run);
}

TEST(ProductRecords, PassErrorsOn) {
    for (const auto& each : kLists) {
        SCOPED_TRACE(each.name);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { each.run(tables); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { each.run(tables); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), 1u);
    }
}

}  // namespace
}  // namespace kpTables::test
