// Outbound goods per project and month.
#include <gtest/gtest.h>

#include "DialectCase.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

const char* const kJetQuantity =
    "TRANSFORM Sum(BILLLIST.数量) AS 月合计 SELECT BILLLIST.pjID AS pjID, Proj.ClassCode,BILLLIST.项目名称 AS "
    "项目名称, "
    "BILLLIST.工程名称 AS 工程名称, BILLLIST.项目编号 AS 项目编号,BILLLIST.工程性质, Sum(BILLLIST.数量) AS 合计 FROM "
    "(SELECT Lst.pjID, Proj.ClassCode,Proj.项目名称,Proj.项目编号,Proj.工程名称,Proj.工程性质, Lst.月份, Rec.数量, "
    "Rec.除税金额, Rec.税额, Rec.金额 FROM (出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) "
    "LEFT "
    "JOIN 项目设置 As Proj ON Lst.pjID = Proj.项目ID) AS BILLLIST GROUP BY BILLLIST.pjID,BillLIST.ClassCode, "
    "BILLLIST.项目名称, BILLLIST.工程名称, BILLLIST.项目编号,BILLLIST.工程性质 PIVOT BILLLIST.月份";
const char* const kJetAmount =
    "TRANSFORM Sum(BILLLIST.金额) AS 月合计 SELECT BILLLIST.pjID AS pjID, Proj.ClassCode,BILLLIST.项目名称 AS "
    "项目名称, "
    "BILLLIST.工程名称 AS 工程名称, BILLLIST.项目编号 AS 项目编号,BILLLIST.工程性质, Sum(BILLLIST.数量) AS 合计 FROM "
    "(SELECT Lst.pjID, Proj.ClassCode,Proj.项目名称,Proj.项目编号,Proj.工程名称,Proj.工程性质, Lst.月份, Rec.数量, "
    "Rec.除税金额, Rec.税额, Rec.金额 FROM (出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) "
    "LEFT "
    "JOIN 项目设置 As Proj ON Lst.pjID = Proj.项目ID) AS BILLLIST GROUP BY BILLLIST.pjID,BillLIST.ClassCode, "
    "BILLLIST.项目名称, BILLLIST.工程名称, BILLLIST.项目编号,BILLLIST.工程性质 PIVOT BILLLIST.月份";
const char* const kServer =
    "SELECT BILLLIST.pjID AS pjID,BILLLIST.ClassCode,BILLLIST.项目名称 AS 项目名称, BILLLIST.工程名称 AS 工程名称, "
    "BILLLIST.项目编号 AS 项目编号,BILLLIST.工程性质,"
    "SUM(CASE 月份 when 1 then billlist.数量 else 0 end) as 一,"
    "sum(case 月份 when 2 then billlist.数量 else 0 end) as 二,"
    "sum(case 月份 when 3 then billlist.数量 else 0 end) as 三,"
    "sum(case 月份 when 4 then billlist.数量 else 0 end) as 四,"
    "sum(case 月份 when 5 then billlist.数量 else 0 end) as 五,"
    "sum(case 月份 when 6 then billlist.数量 else 0 end) as 六,"
    "sum(case 月份 when 7 then billlist.数量 else 0 end) as 七,"
    "sum(case 月份 when 8 then billlist.数量 else 0 end) as 八,"
    "sum(case 月份 when 9 then billlist.数量 else 0 end) as 九,"
    "sum(case 月份 when 10 then billlist.数量 else 0 end) as 十,"
    "sum(case 月份 when 11 then billlist.数量 else 0 end) as 十一,"
    "sum(case 月份 when 12 then billlist.数量 else 0 end) as 十二,"
    "Sum(BILLLIST.数量) As 合计 FROM (SELECT Lst.pjID, Proj.ClassCode,Proj.项目名称,Proj.项目编号,Proj.工程名称,"
    "Proj.工程性质, Lst.月份 AS 月份, Rec.数量, Rec.除税金额, Rec.税额, Rec.金额 FROM (出库目录 AS Lst INNER JOIN "
    "出库记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 项目设置 As Proj ON Lst.pjID = Proj.项目ID) AS BILLLIST "
    "GROUP BY BILLLIST.pjID,BillLIST.ClassCode, BILLLIST.项目名称, BILLLIST.工程名称, "
    "BILLLIST.项目编号,BILLLIST.工程性质";

TEST(ProjectSummary, StatementsAndTheMeasureWrittenBack) {
    struct Case {
        const char* measure;
        const char* statement;
        const char* after;
    };
    const Case cases[] = {
        {"金额", kJetAmount, "金额"},  {"数量", kJetQuantity, "数量"},  {"", kJetQuantity, "数量"},
        {"金", kJetQuantity, "数量"},  {"金额 ", kJetQuantity, "数量"}, {"除税金额", kJetQuantity, "数量"},
        {"O'X", kJetQuantity, "数量"},
    };
    for (const Case& each : cases) {
        const auto call = [&](CTables& t) {
            std::string measure = each.measure;
            t.rs项目汇总表(measure);
            EXPECT_EQ(measure, each.after);
        };
        const DialectCase rows[] = {{each.measure, call, {Executed(each.statement)}, {Executed(kServer)}}};
        ExpectDialects(rows);
    }
}

TEST(ProjectSummary, WithoutAMeasureItIsTheQuantity) {
    const DialectCase cases[] = {
        {"absent", [](CTables& t) { t.rs项目汇总表(); }, {Executed(kJetQuantity)}, {Executed(kServer)}},
    };
    ExpectDialects(cases);
}

TEST(ProjectSummary, HandsOutTheConnectionsRowsWithTheirCacheSize) {
    for (const bool isSQL : {false, true}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        const auto rows = MakeRows({{"pjID", VarType::Long}}, {{1}, {2}});
        rows->SetCacheSize(37);
        cnn->Answer(rows);
        CTables tables;
        tables.Cnn(cnn);
        tables.isSQL(isSQL);
        EXPECT_EQ(tables.rs项目汇总表("金额"), rows);
        EXPECT_EQ(rows->CacheSize(), 37);
        EXPECT_EQ(rows->AbsolutePosition(), 1);
    }
}

TEST(ProjectSummary, AnErrorReachesTheCaller) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.rs项目汇总表("金额"); }), 91);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1);
    tables.Cnn(cnn);
    std::string measure = "合计";
    EXPECT_EQ(FailureOf([&] { tables.rs项目汇总表(measure); }), kRefused);
    EXPECT_EQ(measure, "数量");
}

}  // namespace
}  // namespace kpTables::test
