// The balance table: statements, results and failures.
#include <gtest/gtest.h>

#include "StatementCase.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(BalanceStatements, Months) {
    const StatementCase cases[] = {
        {"by default",
         [](CTables& t) { t.rs月份列表(); },
         {Executed("Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份")}},
        {"ascending",
         [](CTables& t) { t.rs月份列表(false); },
         {Executed("Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份")}},
        {"descending",
         [](CTables& t) { t.rs月份列表(true); },
         {Executed("Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份 DESC")}},
    };
    ExpectStatements(cases);
}

TEST(BalanceStatements, Rows) {
    const StatementCase cases[] = {
        {"all", [](CTables& t) { t.rs仓库余额表(); }, {Opened("仓库余额表", SourceKind::Table)}},
        {"negative means all", [](CTables& t) { t.rs仓库余额表(-1, -1); }, {Opened("仓库余额表", SourceKind::Table)}},
        {"warehouse",
         [](CTables& t) { t.rs仓库余额表(2); },
         {Opened("Select * From 仓库余额表 Where True  And dpID=2")}},
        {"month",
         [](CTables& t) { t.rs仓库余额表(0, 13); },
         {Opened("Select * From 仓库余额表 Where True  And 月份=13")}},
        {"both",
         [](CTables& t) { t.rs仓库余额表(2, 3); },
         {Opened("Select * From 仓库余额表 Where True  And dpID=2 And 月份=3")}},
    };
    ExpectStatements(cases);
}

TEST(BalanceStatements, Deletion) {
    const StatementCase cases[] = {
        {"a warehouse",
         [](CTables& t) { EXPECT_FALSE(t.Del仓库余额(3)); },
         {Executed("Delete From 仓库余额表 Where dpID=3")}},
        {"warehouse 0 is no wildcard",
         [](CTables& t) { EXPECT_FALSE(t.Del仓库余额(0)); },
         {Executed("Delete From 仓库余额表 Where dpID=0")}},
        {"everything", [](CTables& t) { t.Del仓库余额表(); }, {Executed("Delete From 仓库余额表 Where True ")}},
        {"negative means all",
         [](CTables& t) { t.Del仓库余额表(-2, -1); },
         {Executed("Delete From 仓库余额表 Where True ")}},
        {"one warehouse",
         [](CTables& t) { t.Del仓库余额表(3); },
         {Executed("Delete From 仓库余额表 Where True  And dpID=3")}},
        {"one month",
         [](CTables& t) { t.Del仓库余额表(0, 4); },
         {Executed("Delete From 仓库余额表 Where True  And 月份=4")}},
        {"one month of one warehouse",
         [](CTables& t) { t.Del仓库余额表(3, 4); },
         {Executed("Delete From 仓库余额表 Where True  And dpID=3 And 月份=4")}},
        {"months before", [](CTables& t) { t.清理仓库余额表(5); }, {Executed("Delete From 仓库余额表 Where 月份<5")}},
        {"months before 0", [](CTables& t) { t.清理仓库余额表(0); }, {Executed("Delete From 仓库余额表 Where 月份<0")}},
        {"months before -1",
         [](CTables& t) { t.清理仓库余额表(-1, -1); },
         {Executed("Delete From 仓库余额表 Where 月份<-1")}},
        {"months before, one warehouse",
         [](CTables& t) { t.清理仓库余额表(1, 2); },
         {Executed("Delete From 仓库余额表 Where 月份<1 And dpID=2")}},
    };
    ExpectStatements(cases);
}

TEST(BalanceStatements, InboundAlready) {
    const StatementCase cases[] = {
        {"product",
         [](CTables& t) { EXPECT_FALSE(t.商品已经入库(8)); },
         {Executed("Select Top 2  * From 入库记录 Where pdID=8")}},
        {"negative warehouse",
         [](CTables& t) { EXPECT_FALSE(t.商品已经入库(-8, -1)); },
         {Executed("Select Top 2  * From 入库记录 Where pdID=-8")}},
        {"product and warehouse",
         [](CTables& t) { EXPECT_FALSE(t.商品已经入库(8, 2)); },
         {Executed("Select Top 2  * From 入库记录 Where pdID=8 And 仓库=2")}},
    };
    ExpectStatements(cases);
}

TEST(BalanceStatements, OpeningStock) {
    const StatementCase cases[] = {
        {"no arguments: month 0",
         [](CTables& t) { t.rs仓库余额表期初(); },
         {Executed(
             "SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 Where True  And 月份=0 ORDER BY "
             "仓库余额表.pdID")}},
        {"month",
         [](CTables& t) { t.rs仓库余额表期初(3); },
         {Executed(
             "SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 Where True  And 月份=3 ORDER BY "
             "仓库余额表.pdID")}},
        {"month and warehouse",
         [](CTables& t) { t.rs仓库余额表期初(3, 2); },
         {Executed("SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 Where True  And dpID=2 And "
                   "月份=3 ORDER BY 仓库余额表.pdID")}},
        {"month -1",
         [](CTables& t) { t.rs仓库余额表期初(-1, -2, false); },
         {Executed(
             "SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 Where True  And 月份=-1 ORDER BY "
             "仓库余额表.pdID")}},
        {"initial, all warehouses",
         [](CTables& t) { t.rs仓库余额表期初(3, 0, true); },
         {Executed("SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 ORDER BY pdID")}},
        {"initial, negative warehouse",
         [](CTables& t) { t.rs仓库余额表期初(0, -1, true); },
         {Executed("SELECT pdID,上期库存数量 As 数量,上期库存金额 As 金额 FROM 仓库余额表 ORDER BY pdID")}},
        {"initial, one warehouse",
         [](CTables& t) { t.rs仓库余额表期初(3, 1, true); },
         {Executed(
             "SELECT pdID,Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 FROM 仓库余额表 Where dpID=1 Group by "
             "pdID ORDER BY pdID")}},
    };
    ExpectStatements(cases);
}

// The report's text up to and after its condition.
const std::string kReportStart =
    "SELECT BnRec.pdID As pdID,Avg(上期库存单价) As 上期库存单价,Sum(上期库存数量) As 上期库存数量,Sum(上期库存金额) "
    "As "
    "上期库存金额,Avg(本期入库单价) As 本期入库单价,Sum(本期入库数量) As 本期入库数量,Sum(本期入库金额) As "
    "本期入库金额,Sum(累计入库数量) As 累计入库数量,Sum(累计入库金额) As 累计入库金额,Avg(本期出库单价) As "
    "本期出库单价,Sum(本期出库数量) As 本期出库数量,Sum(本期出库金额) As 本期出库金额,Sum(累计出库数量) As "
    "累计出库数量,Sum(累计出库金额) As 累计出库金额,Avg(本期库存单价) As 本期库存单价,Sum(本期库存数量) As "
    "本期库存数量,Sum(本期库存金额) As "
    "本期库存金额,Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法,Prod.最低库存,Prod."
    "最高库存,"
    "Prod.ClassCode FROM 仓库余额表 As BnRec Left Join 商品设置 As Prod On BnRec.pdID=Prod.pdID ";
const std::string kReportEnd =
    " Group by BnRec.pdID,Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法,Prod.最低库存,"
    "Prod.最高库存,Prod.ClassCode   Order by Prod.ClassCode";
const std::string kFirstMonth = "Select TOP 1 月份 From 仓库余额表  ORDER BY 月份";

TEST(BalanceReport, StatementsOfAGivenMonth) {
    const StatementCase cases[] = {
        {"all warehouses",
         [](CTables& t) { t.rs余额记录(0, 3); },
         {Executed(kReportStart + "Where  月份=3" + kReportEnd)}},
        {"negative warehouse",
         [](CTables& t) { t.rs余额记录(-1, 13); },
         {Executed(kReportStart + "Where  月份=13" + kReportEnd)}},
        {"one warehouse",
         [](CTables& t) { t.rs余额记录(2, 12); },
         {Executed(kReportStart + "Where  dpID=2 And 月份=12" + kReportEnd)}},
    };
    ExpectStatements(cases);
}

TEST(BalanceReport, MonthZeroBecomesTheFirstMonth) {
    struct Case {
        const char* name;
        Rows firstMonth;
        std::int16_t month;
    };
    const Case cases[] = {
        {"third month", {{std::int16_t{3}}}, 3},
        {"Null counts as 1", {{Variant::Null()}}, 1},
    };
    for (const Case& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.name);
            const auto cnn = std::make_shared<ScriptedConnection>();
            const auto rows = MakeRows({{"pdID", VarType::Long}}, {{1}});
            cnn->Answer(MakeRows({{"月份", VarType::Integer}}, each.firstMonth)).Answer(rows);
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            std::int16_t month = 0;
            EXPECT_EQ(tables.rs余额记录(0, month), rows);
            EXPECT_EQ(rows->CacheSize(), 200);
            EXPECT_EQ(month, each.month);
            EXPECT_EQ(
                cnn->Statements(),
                (std::vector<Sent>{Executed(kFirstMonth),
                                   Executed(kReportStart + "Where  月份=" + std::to_string(each.month) + kReportEnd)}));
        }
    }
}

TEST(BalanceReport, WithoutArgumentsAsksForTheFirstMonth) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{1}}}));
    CTables tables;
    tables.Cnn(cnn);
    tables.rs余额记录();
    EXPECT_EQ(cnn->Statements(),
              (std::vector<Sent>{Executed(kFirstMonth), Executed(kReportStart + "Where  月份=1" + kReportEnd)}));
}

TEST(BalanceReport, NothingToReport) {
    const auto unknownCount = MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{3}}});
    unknownCount->ReportCount(-1);
    const RecordsetPtr firstMonths[] = {MakeRows({{"月份", VarType::Integer}}, {}), unknownCount};
    for (const auto& firstMonth : firstMonths) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(firstMonth);
        CTables tables;
        tables.Cnn(cnn);
        std::int16_t month = 0;
        EXPECT_EQ(tables.rs余额记录(2, month), nullptr);
        EXPECT_EQ(month, 0);
        EXPECT_EQ(cnn->Statements(), std::vector<Sent>{Executed(kFirstMonth)});
    }
}

TEST(BalanceReport, ANegativeMonthRunsNothing) {
    const StatementCase cases[] = {
        {"-1", [](CTables& t) { EXPECT_EQ(t.rs余额记录(2, -1), nullptr); }, {}},
    };
    ExpectStatements(cases);
}

TEST(BalanceReport, PassesErrorsOn) {
    for (const int failing : {1, 2}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(failing).Answer(MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{3}}}));
        CTables tables;
        tables.Cnn(cnn);
        std::int16_t month = 0;
        EXPECT_EQ(FailureOf([&] { tables.rs余额记录(0, month); }), kRefused);
        EXPECT_EQ(month, failing == 1 ? 0 : 3);
    }
}

TEST(BalanceRows, HandOutTheConnectionsRows) {
    ExpectHandsOut("rs月份列表", [](CTables& t) { return t.rs月份列表(); });
    ExpectHandsOut("rs仓库余额表, all", [](CTables& t) { return t.rs仓库余额表(); });
    ExpectHandsOut("rs仓库余额表, some", [](CTables& t) { return t.rs仓库余额表(1, 2); });
    ExpectHandsOut("rs仓库余额表期初, month", [](CTables& t) { return t.rs仓库余额表期初(1); });
    ExpectHandsOut("rs仓库余额表期初, initial", [](CTables& t) { return t.rs仓库余额表期初(0, 0, true); });
    ExpectHandsOut("rs仓库余额表期初, initial, warehouse", [](CTables& t) { return t.rs仓库余额表期初(0, 1, true); });
    ExpectHandsOut("rs余额记录", [](CTables& t) { return t.rs余额记录(1, 2); });
}

TEST(BalanceFailures, OnlyDeletionOfAWarehouseTraps) {
    struct Case {
        const char* name;
        std::function<void(CTables&)> call;
    };
    const Case raising[] = {
        {"rs月份列表", [](CTables& t) { t.rs月份列表(); }},
        {"rs仓库余额表, all", [](CTables& t) { t.rs仓库余额表(); }},
        {"rs仓库余额表, some", [](CTables& t) { t.rs仓库余额表(1); }},
        {"Del仓库余额表", [](CTables& t) { t.Del仓库余额表(); }},
        {"清理仓库余额表", [](CTables& t) { t.清理仓库余额表(1); }},
        {"商品已经入库", [](CTables& t) { t.商品已经入库(1); }},
        {"rs仓库余额表期初", [](CTables& t) { t.rs仓库余额表期初(); }},
        {"rs余额记录", [](CTables& t) { t.rs余额记录(); }},
        {"CheckBnProduct", [](CTables& t) { t.CheckBnProduct(1); }},
    };
    for (const Case& each : raising) {
        SCOPED_TRACE(each.name);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { each.call(tables); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { each.call(tables); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), 1u);
    }

    CTables tables;
    EXPECT_FALSE(tables.Del仓库余额(1));
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1);
    tables.Cnn(cnn);
    EXPECT_FALSE(tables.Del仓库余额(1));
    EXPECT_EQ(cnn->Statements().size(), 1u);
}

TEST(BalanceRows, AQueryWithoutARecordsetIsAnError) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(nullptr).Answer(nullptr);
    CTables tables;
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.rs月份列表(); }), 91);
    EXPECT_EQ(FailureOf([&] { tables.rs仓库余额表(); }), 91);
}

}  // namespace
}  // namespace kpTables::test
