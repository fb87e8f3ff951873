// Reports whose groups come as the indexes hold the rows, or else are sorted from rows that are read as they lie.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "QueryPlan.h"
#include "TestBook.h"
#include "TestDatabase.h"
#include "corpus/Call.h"
#include "engines/sqlite/BookFile.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::engines::sqlite {
namespace {

using namespace test;

struct PlanCase {
    const char* text;  ///< or a call of the component that sends it
    std::string plan;
};

/// What the bill list looks up for each bill once the lines are added up.
constexpr const char* kLookups =
    "SCAN query 1; SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?); "
    "SEARCH ks USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN; "
    "SEARCH dp USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN; "
    "SEARCH pj USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN; USE TEMP B-TREE FOR ORDER BY";

const PlanCase kBillLists[] = {
    {R"(rs单据列表("入库", "", "", "", "", "", 0, 0, 0, "", "", "", "", "", "", "", "", 0, 0, 0, 0))",
     std::string("CO-ROUTINE query 1; SCAN Lst; SEARCH Rec USING INDEX 入库记录.BillID (BillID=?) LEFT-JOIN; ") +
         kLookups},
    {R"(rs单据列表("入库", "", #2003-06-01#, #2003-06-30#, "", "", 0, 0, 0, "", "", "", "", "", "", "", "", 0, 0, 0, 0))",
     std::string("CO-ROUTINE query 1; SEARCH Lst USING COVERING INDEX 入库目录.日期 "
                 "((年份,月份,日子)>(?,?,?) AND (年份,月份,日子)<(?,?,?)); "
                 "SEARCH Rec USING INDEX 入库记录.BillID (BillID=?) LEFT-JOIN; ") +
         kLookups},
    {R"(rs单据列表("出库", "", "", "", "CK1", "CK2", 0, 0, 0, "", "", "", "", "", "", "", "", 0, 0, 0, 0))",
     std::string("CO-ROUTINE query 1; SEARCH Lst USING COVERING INDEX 出库目录.单据编号 (单据编号>? AND 单据编号<?); "
                 "SEARCH Rec USING INDEX 出库记录.BillID (BillID=?) LEFT-JOIN; ") +
         kLookups},
    {R"(rs单据列表("入库", "", "", "", "", "", 1, 0, 0, "", "", "", "", "", "", "", "", 0, 0, 0, 0))",
     std::string("CO-ROUTINE query 1; SEARCH Lst USING COVERING INDEX 入库目录.dpID (dpID=?); "
                 "SEARCH Rec USING INDEX 入库记录.BillID (BillID=?) LEFT-JOIN; ") +
         kLookups},
};

/// A host's own questions, which look up less.
const PlanCase kOfTheHost[] = {
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

/// A bill's lines are added up as its index brings them, so that there is a row a bill to be sorted.
constexpr const char* kPlanOfProjects =
    "MATERIALIZE Rec; SCAN 出库记录 USING INDEX 出库记录.BillID; SCAN Rec; SEARCH Lst USING INTEGER PRIMARY KEY "
    "(rowid=?); SEARCH Proj USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN; USE TEMP B-TREE FOR GROUP BY";

/// The statement of a call that sends one.
std::string Sent(const std::string& call, bool isSQL = false) { return corpus::SentBy(call, isSQL).at(0); }

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
        return test::PlanOf(session_->GetDatabase(),
                            sql::TranslatePivotQuery(static_cast<const sql::TransformStatement&>(*statement),
                                                     session_->GetCatalog(), sql::print::sqlite::SqliteEngine())
                                .text);
    }

private:
    TemporaryDirectory directory_;
    std::unique_ptr<TestDatabase> session_;
};

TEST_F(GroupPlan, NothingIsSortedToBeGrouped) {
    for (const auto& [call, expected] : kBillLists) EXPECT_EQ(PlanOf(Sent(call)), expected) << call;
    for (const auto& [text, expected] : kOfTheHost) EXPECT_EQ(PlanOf(text), expected) << text;
}

TEST_F(GroupPlan, LinesAreNotFetchedOneByOneInTheOrderOfTheirProducts) {
    const std::string lookup = "SCAN query 1; SEARCH Prod USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN";
    EXPECT_EQ(PlanOf(Sent(R"(rs商品汇总("出库", 0, 0, 0, 0, ""))")),
              "CO-ROUTINE query 1; SCAN Rec; SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?); "
              "USE TEMP B-TREE FOR GROUP BY; " +
                  lookup);
    EXPECT_EQ(PlanOf(Sent(R"(rs商品汇总("出库", 6, 6, 1, 0, ""))")),
              "CO-ROUTINE query 1; SEARCH Lst USING COVERING INDEX 出库目录.仓库月份 (dpID=? AND 月份=?); "
              "SEARCH Rec USING INDEX 出库记录.BillID (BillID=?); USE TEMP B-TREE FOR GROUP BY; " +
                  lookup);
    EXPECT_EQ(PlanOf(Sent(R"(rs商品汇总("出库", 0, 6, 0, 0, ""))")),
              "CO-ROUTINE query 1; SEARCH Lst USING COVERING INDEX 出库目录.月份单据 (月份<?); "
              "SEARCH Rec USING INDEX 出库记录.BillID (BillID=?); USE TEMP B-TREE FOR GROUP BY; " +
                  lookup);
    EXPECT_EQ(
        PlanOf("SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Prod.商品名称, Prod.ClassCode FROM (出库目录 AS Lst INNER JOIN "
               "出库记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID Where "
               "Rec.pdID=7 GROUP BY Rec.pdID, Prod.商品名称, Prod.ClassCode "),
        "CO-ROUTINE query 1; SEARCH Rec USING INDEX 出库记录.pdID (pdID=?); "
        "SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?); " +
            lookup);
}

TEST_F(GroupPlan, AProductsLinesAreFoundBeforeAWarehousesBills) {
    for (const char* call :
         {R"(Get商品出库(1, 5, 6, "数量", "", True))", R"(Get商品出库(1, 5, 6, "数量"))",
          R"(Get商品出库(0, 5, 6, "数量", "", True))", R"(Get商品出库(1, 5, 6, "数量", "直接", True))"}) {
        EXPECT_EQ(PlanOf(Sent(call)),
                  "SEARCH Rec USING INDEX 出库记录.pdID (pdID=?); SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?)")
            << call;
    }
}

TEST_F(GroupPlan, LinesAreReadAsTheyLieToBeSortedByPartners) {
    EXPECT_EQ(PlanOf(Sent(R"(rs单位汇总(0, 0, "客户"))")),
              "CO-ROUTINE query 1; SCAN Rec; SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?); "
              "USE TEMP B-TREE FOR GROUP BY; SCAN query 1; "
              "SEARCH Ks USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN");
}

TEST_F(GroupPlan, BillsAreSortedByProjectsNotTheirLines) {
    EXPECT_EQ(PlanOf(Sent("rs项目汇总表()", true)), kPlanOfProjects);
    const std::string crosstab = Sent(R"(rs项目汇总表("金额"))");
    EXPECT_EQ(PlanOf(crosstab), kPlanOfProjects);
    EXPECT_EQ(PlanOfPivotValues(crosstab),
              "SCAN Lst USING COVERING INDEX 出库目录.月份单据; CORRELATED SCALAR SUBQUERY 1; "
              "SEARCH Rec USING COVERING INDEX 出库记录.BillID (BillID=?)");
}

}  // namespace
}  // namespace kpTables::engines::sqlite
