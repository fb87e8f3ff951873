// Reports whose groups come as the indexes hold the rows, however large the book is.
#include <gtest/gtest.h>

#include <string>

#include "TestBook.h"
#include "engines/sqlite/BookFile.h"
#include "engines/sqlite/Session.h"
#include "sql/Parser.h"
#include "sql/sqlite/SqliteTranslator.h"

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
    {"SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Prod.商品名称, Prod.ClassCode FROM (出库目录 AS Lst INNER JOIN 出库记录 "
     "AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID  GROUP BY Rec.pdID, "
     "Prod.商品名称, Prod.ClassCode ",
     "CO-ROUTINE query 1; SCAN Rec USING INDEX 出库记录.pdID; SEARCH Lst USING INTEGER PRIMARY KEY (rowid=?); "
     "SCAN query 1; SEARCH Prod USING INTEGER PRIMARY KEY (rowid=?) LEFT-JOIN"},
};

TEST(GroupPlan, NothingIsSortedToBeGrouped) {
    const TemporaryDirectory directory;
    SqliteConnection::Create(directory.File("book"));
    Session session(OpenBookFile(directory.File("book"), {}));
    session.GetCatalog().Refresh();
    for (const auto& [text, expected] : kCases) {
        const std::string translated = sql::TranslateForSqlite(*sql::Parse(text), session.GetCatalog()).text;
        PreparedStatement explain = session.GetDatabase().Prepare("EXPLAIN QUERY PLAN " + translated);
        constexpr int kDetail = 3;
        std::string plan;
        while (explain.Step()) plan.append(plan.empty() ? "" : "; ").append(explain.Text(kDetail));
        EXPECT_EQ(plan, expected) << text;
    }
}

}  // namespace
}  // namespace kpTables::sqlite
