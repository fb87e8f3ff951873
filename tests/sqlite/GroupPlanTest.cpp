// Reports whose groups come as the indexes hold the rows, or else are sorted from rows that are read as they lie.
#include <gtest/gtest.h>

#include <memory>
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

struct PlanCase {
    const char* text;
    const char* plan;
};

constexpr PlanCase kCases[] = {
    {"SELECT Lst.单据编号, Sum(Rec.数量) AS 数量, Lst.BillID, dp.仓库名称, ks.企业名称,pj.项目名称 FROM 项目设置 AS pj "
     "RIGHT JOIN (仓库设置 AS dp RIGHT JOIN (厂商资料 AS ks RIGHT JOIN (入库目录 AS Lst LEFT JOIN 入库记录 AS Rec ON "
     "Lst.BillID = Rec.BillID) ON ks.KSID = Lst.ksID) ON dp.dpID = Lst.dpID) ON pj.项目ID = Lst.pjID  GROUP BY "
     "Lst.月份, Lst.单据类型, Lst.单据编号, Lst.BillID, Rec.dpID, dp.仓库名称,ks.企业名称,pj.项目名称  Order by "
     "Lst.月份,Lst.单据类型,Lst.单据编号 ",
     "CO-ROUTINE query 1; SCAN Lst; SEARCH Rec USING INDEX 入库记录.BillID (BillID=?) LEFT-JOIN; "
     "SCAN query 1; SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?); "
     "SEARCH ks USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN; "
     "SEARCH dp USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN; "
     "SEARCH pj USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN; USE TEMP B-TREE FOR ORDER BY"},
    {"SELECT Lst.单据编号, Sum(Rec.数量) AS 数量, Lst.BillID FROM 入库目录 AS Lst LEFT JOIN 入库记录 AS Rec ON "
     "Lst.BillID "
     "= Rec.BillID WHERE ((CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2003-6-1#) And (CDATE(年份 & '-' & 月份 & '-' & "
     "日子)<=#2003-6-30#)) GROUP BY Lst.年份, Lst.月份, Lst.日子, Lst.单据编号, Lst.BillID, Rec.dpID Order by "
     "Lst.单据编号 ",
     "SEARCH Lst USING INDEX 入库目录.日期 ((年份,月份,日子)>(?,?,?) AND (年份,月份,日子)<(?,?,?)); "
     "SEARCH Rec USING INDEX 入库记录.BillID (BillID=?) LEFT-JOIN; USE TEMP B-TREE FOR ORDER BY"},
    {"SELECT Lst.单据编号, Sum(Rec.数量) AS 数量, Lst.BillID FROM 出库目录 AS Lst LEFT JOIN 出库记录 AS Rec ON "
     "Lst.BillID "
     "= Rec.BillID WHERE (Lst.单据编号>='CK1' And Lst.单据编号<='CK2')  GROUP BY Lst.年份, Lst.单据编号, Lst.BillID, "
     "Rec.dpID Order by Lst.年份 ",
     "SEARCH Lst USING INDEX 出库目录.单据编号 (单据编号>? AND 单据编号<?); "
     "SEARCH Rec USING INDEX 出库记录.BillID (BillID=?) LEFT-JOIN; USE TEMP B-TREE FOR ORDER BY"},
    {"SELECT Lst.单据编号, Sum(Rec.数量) AS 数量, Lst.BillID, dp.仓库名称 FROM 仓库设置 AS dp RIGHT JOIN (入库目录 AS "
     "Lst LEFT JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID) ON dp.dpID = Lst.dpID WHERE Lst.dpID=1 GROUP BY "
     "Lst.年份, Lst.月份, Lst.单据编号, Lst.BillID, Rec.dpID, dp.仓库名称 Order by Lst.月份,Lst.单据编号 ",
     "CO-ROUTINE query 1; SEARCH Lst USING COVERING INDEX 入库目录.dpID (dpID=?); "
     "SEARCH Rec USING INDEX 入库记录.BillID (BillID=?) LEFT-JOIN; "
     "SCAN query 1; SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?); "
     "SEARCH dp USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN; USE TEMP B-TREE FOR ORDER BY"},
    {"SELECT Lst.单据编号, Sum(Rec.数量) AS 数量, Lst.BillID FROM 出库目录 AS Lst LEFT JOIN 出库记录 AS Rec ON "
     "Lst.BillID = Rec.BillID WHERE Lst.dpID=1 And Lst.月份=6 GROUP BY Lst.单据编号, Lst.BillID, Rec.dpID Order by "
     "Lst.单据编号 ",
     "SEARCH Lst USING INDEX 出库目录.仓库月份 (dpID=? AND 月份=?); "
     "SEARCH Rec USING INDEX 出库记录.BillID (BillID=?) LEFT-JOIN; USE TEMP B-TREE FOR ORDER BY"},
};

constexpr const char* kProjectLines =
    " FROM (SELECT Lst.pjID, Proj.ClassCode,Proj.项目名称, Lst.月份, Rec.数量, Rec.除税金额, Rec.税额, Rec.金额 FROM "
    "(出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 项目设置 As Proj ON Lst.pjID = "
    "Proj.项目ID) AS BILLLIST GROUP BY BILLLIST.pjID,BillLIST.ClassCode, BILLLIST.项目名称";

/// A bill's lines are added up as its index brings them, so that there is a row a bill to be sorted.
constexpr const char* kPlanOfProjects =
    "MATERIALIZE Rec; SCAN 出库记录 USING INDEX 出库记录.BillID; SCAN Rec; SEARCH Lst USING INTEGER PRIMARY KEY "
    "(rowid=?); SEARCH Proj USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN; USE TEMP B-TREE FOR GROUP BY";

class GroupPlan : public testing::Test {
protected:
    GroupPlan() {
        CreateBook(directory_.File("book"));
        session_ = std::make_unique<TestDatabase>(OpenBookFile(directory_.File("book"), {}));
        session_->GetCatalog().Refresh();
    }

    void SetUp() override {
        if (const std::string reason = OtherPlans(); !reason.empty()) GTEST_SKIP() << reason;
    }

    std::string PlanOf(const std::string& text) {
        const sql::StatementPtr statement = sql::parse::Parse(text);
        return test::PlanOf(
            session_->GetDatabase(),
            sql::Translate(*statement, session_->GetCatalog(), sql::print::sqlite::SqliteEngine()).text);
    }

    std::string PlanOfPivotValues(const std::string& text) {
        const sql::StatementPtr statement = sql::parse::Parse(text);
        auto& transform = static_cast<sql::TransformStatement&>(*statement);
        sql::PassOverLines(transform, session_->GetCatalog());
        return test::PlanOf(session_->GetDatabase(), sql::PivotQuery(transform, session_->GetCatalog()).text);
    }

private:
    TemporaryDirectory directory_;
    std::unique_ptr<TestDatabase> session_;
};

TEST_F(GroupPlan, NothingIsSortedToBeGrouped) {
    for (const auto& [text, expected] : kCases) EXPECT_EQ(PlanOf(text), expected) << text;
}

TEST_F(GroupPlan, LinesAreNotFetchedOneByOneInTheOrderOfTheirProducts) {
    const std::string lines =
        "SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Prod.商品名称, Prod.ClassCode FROM (出库目录 AS Lst INNER JOIN "
        "出库记录 "
        "AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID ";
    const std::string groups = " GROUP BY Rec.pdID, Prod.商品名称, Prod.ClassCode ";
    const std::string lookup = "SCAN query 1; SEARCH Prod USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN";
    EXPECT_EQ(PlanOf(lines + groups),
              "CO-ROUTINE query 1; SCAN Rec; SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?); "
              "USE TEMP B-TREE FOR GROUP BY; " +
                  lookup);
    EXPECT_EQ(PlanOf(lines + "Where (Lst.月份=6) And Lst.dpID=1" + groups),
              "CO-ROUTINE query 1; SEARCH Lst USING COVERING INDEX 出库目录.仓库月份 (dpID=? AND 月份=?); "
              "SEARCH Rec USING INDEX 出库记录.BillID (BillID=?); USE TEMP B-TREE FOR GROUP BY; " +
                  lookup);
    EXPECT_EQ(PlanOf(lines + "Where Lst.月份<=6" + groups),
              "CO-ROUTINE query 1; SEARCH Lst USING COVERING INDEX 出库目录.月份单据 (月份<?); "
              "SEARCH Rec USING INDEX 出库记录.BillID (BillID=?); USE TEMP B-TREE FOR GROUP BY; " +
                  lookup);
    EXPECT_EQ(PlanOf(lines + "Where Rec.pdID=7" + groups),
              "CO-ROUTINE query 1; SEARCH Rec USING INDEX 出库记录.pdID (pdID=?); "
              "SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?); " +
                  lookup);
}

TEST_F(GroupPlan, AProductsLinesAreFoundBeforeAWarehousesBills) {
    const std::string sum =
        "SELECT Sum(Rec.数量) AS 数量 FROM 出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID ";
    for (const char* condition : {"Where Lst.月份<=6 And Lst.dpID=1 And Rec.pdID=5",
                                  "Where Lst.月份=6 And Lst.dpID=1 And Rec.pdID=5", "Where Lst.月份<=6 And Rec.pdID=5",
                                  "Where Lst.月份<=6 And Lst.dpID=1 And Rec.pdID=5 And 单据类型='出库单'"}) {
        EXPECT_EQ(PlanOf(sum + condition),
                  "SEARCH Rec USING INDEX 出库记录.pdID (pdID=?); SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?)")
            << condition;
    }
}

TEST_F(GroupPlan, LinesAreReadAsTheyLieToBeSortedByPartners) {
    EXPECT_EQ(
        PlanOf("SELECT Lst.ksID,ks.ClassCode, Ks.企业名称,Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 除税单价 "
               "FROM (出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID) LEFT JOIN 客户资料 AS "
               "Ks ON Lst.ksID = Ks.KSID  GROUP BY Lst.ksID, Ks.企业名称,Ks.ClassCode"),
        "CO-ROUTINE query 1; SCAN Rec; SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?); "
        "USE TEMP B-TREE FOR GROUP BY; SCAN query 1; "
        "SEARCH Ks USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN");
}

TEST_F(GroupPlan, BillsAreSortedByProjectsNotTheirLines) {
    const std::string lines = kProjectLines;
    EXPECT_EQ(PlanOf("SELECT BILLLIST.pjID AS pjID,SUM(CASE 月份 when 1 then billlist.数量 else 0 end) as "
                     "一,Sum(BILLLIST.数量) As 合计 " +
                     lines),
              kPlanOfProjects);
    const std::string crosstab =
        "TRANSFORM Sum(BILLLIST.金额) AS 月合计 SELECT BILLLIST.pjID AS pjID, "
        "Proj.ClassCode, Sum(BILLLIST.数量) AS 合计" +
        lines + " PIVOT BILLLIST.月份";
    EXPECT_EQ(PlanOf(crosstab), kPlanOfProjects);
    EXPECT_EQ(PlanOfPivotValues(crosstab),
              "SCAN Lst USING COVERING INDEX 出库目录.月份单据; CORRELATED SCALAR SUBQUERY 1; "
              "SEARCH Rec USING COVERING INDEX 出库记录.BillID (BillID=?)");
}

}  // namespace
}  // namespace kpTables::sqlite
