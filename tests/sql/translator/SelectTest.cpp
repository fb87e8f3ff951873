#include "ExpressionCases.h"

namespace kpTables::sql::test {

TEST(Select, ColumnsAndNames) {
    CheckStatements({
        {"Select * From Header", R"(SELECT "Header"."Table", "Header"."Index", "Header"."Flag" FROM "Header")", "",
         "Table Text, Index Long, Flag Text"},
        {"select TABLE, h.index from HEADER h", R"(SELECT "h"."Table", "h"."Index" FROM "Header" AS "h")", "",
         "Table Text, Index Long"},
        {"Select K.*, K.ksid As k From 厂商资料 As k",
         R"(SELECT "k"."KSID", "k"."企业名称", "k"."KSID" AS "k" FROM "厂商资料" AS "k")", "",
         "KSID Long, 企业名称 Text, k Long"},
        {"Select 厂商资料.企业名称 From 厂商资料", R"(SELECT "厂商资料"."企业名称" FROM "厂商资料")", "",
         "企业名称 Text"},
        {"Select 1+1, 'a', KSID, KSID+1 From 厂商资料",
         R"(SELECT ?1 + ?2, ?3, "厂商资料"."KSID", "厂商资料"."KSID" + ?4 FROM "厂商资料")",
         "0 Number, 1 Number, 2 Text, 3 Number", "Expr1000 Long, Expr1001 Text, KSID Long, Expr1002 Long"},
        {"Select @@IDENTITY", "SELECT last_insert_rowid()", "", "Expr1000 Long"},
        {"Select 数量 As q, q*2 As w From 入库记录",
         R"(SELECT "入库记录"."数量" AS "q", "入库记录"."数量" * ?1 AS "w" FROM "入库记录")", "0 Number",
         "q Double, w Double"},
        {"Select * From Header, 厂商资料",
         R"(SELECT "Header"."Table", "Header"."Index", "Header"."Flag", "厂商资料"."KSID", "厂商资料"."企业名称")"
         R"( FROM "Header", "厂商资料")",
         "", "Table Text, Index Long, Flag Text, KSID Long, 企业名称 Text"},
    });
}

TEST(Select, WhereTrueLeavesNoTrace) {
    CheckStatements({
        {"Select KSID From 厂商资料 Where True ", R"(SELECT "厂商资料"."KSID" FROM "厂商资料")", "", "KSID Long"},
        {"Select KSID From 厂商资料 Where True  And KSID=1 And 企业名称='x'",
         R"(SELECT "厂商资料"."KSID" FROM "厂商资料" WHERE "厂商资料"."KSID" = ?1 AND "厂商资料"."企业名称" = ?2)",
         "0 Number, 1 Text", "KSID Long"},
    });
}

TEST(Select, Order) {
    CheckStatements({
        {"Select Distinct 年份,月份 From 入库目录 Order by 年份,月份 DESC",
         R"(SELECT DISTINCT "入库目录"."年份", "入库目录"."月份" FROM "入库目录")"
         R"( ORDER BY "入库目录"."年份", "入库目录"."月份" DESC)",
         "", "年份 Short, 月份 Short"},
        {"Select KSID As 号 From 厂商资料 Order By 号 DESC, 企业名称",
         R"(SELECT "厂商资料"."KSID" AS "号" FROM "厂商资料" ORDER BY "厂商资料"."KSID" DESC, "厂商资料"."企业名称")",
         "", "号 Long"},
        {"Select Trim(企业名称) As 名 From 厂商资料 Order By 名",
         R"(SELECT trim("厂商资料"."企业名称") AS "名" FROM "厂商资料" ORDER BY 1 COLLATE KPTEXT)", "", "名 Text"},
        {"Select KSID From 厂商资料 Order By Trim(企业名称) DESC",
         R"(SELECT "厂商资料"."KSID" FROM "厂商资料" ORDER BY trim("厂商资料"."企业名称") COLLATE KPTEXT DESC)", "",
         "KSID Long"},
        {"Select KSID, KSID+1 From 厂商资料 Order By 2 DESC",
         R"(SELECT "厂商资料"."KSID", "厂商资料"."KSID" + ?1 FROM "厂商资料" ORDER BY 2 DESC)", "0 Number",
         "KSID Long, Expr1000 Long"},
        {"Select Distinct Trim(企业名称) From 厂商资料",
         R"(SELECT DISTINCT trim("厂商资料"."企业名称") COLLATE KPTEXT FROM "厂商资料")", "", "Expr1000 Text"},
    });
    EXPECT_EQ(FixedOf(Translated("Select KSID, KSID+1 From 厂商资料 Order By 2 DESC")), "1");
}

TEST(Select, TopCutsTheRows) {
    CheckStatements({
        {"Select Top 2  * From Header Where Index=7",
         R"(SELECT "Header"."Table", "Header"."Index", "Header"."Flag" FROM "Header" WHERE "Header"."Index" = ?1 LIMIT 2)",
         "1 Number", "Table Text, Index Long, Flag Text"},
        {"Select Distinct top 1 年份 From 入库目录 Order by 年份",
         R"(SELECT DISTINCT "入库目录"."年份" FROM "入库目录" ORDER BY "入库目录"."年份" LIMIT 1)", "", "年份 Short"},
    });
    EXPECT_EQ(FixedOf(Translated("Select Top 2  * From Header Where Index=7")), "0");
}

TEST(Select, SubqueriesNeedNoOrder) {
    CheckStatements({
        {"Select KSID From 厂商资料 Where KSID In (Select ksID From 入库目录 Order By ksID)",
         R"(SELECT "厂商资料"."KSID" FROM "厂商资料" WHERE "厂商资料"."KSID" IN (SELECT "入库目录"."ksID" FROM "入库目录"))",
         "", "KSID Long"},
        {"Select KSID From 厂商资料 Where KSID=(Select Top 1 ksID From 入库目录 Order By BillID DESC)",
         R"(SELECT "厂商资料"."KSID" FROM "厂商资料" WHERE "厂商资料"."KSID" = (SELECT "入库目录"."ksID" FROM "入库目录")"
         R"( ORDER BY "入库目录"."BillID" DESC LIMIT 1))",
         "", "KSID Long"},
    });
}

TEST(Select, NamesOfAQueryAround) {
    CheckStatements({
        {"Select KSID From 厂商资料 As K Where Exists (Select * From Header Where Index=K.KSID And Flag=企业名称)",
         R"(SELECT "K"."KSID" FROM "厂商资料" AS "K" WHERE EXISTS (SELECT "Header"."Table", "Header"."Index", )"
         R"("Header"."Flag" FROM "Header" WHERE "Header"."Index" = "K"."KSID" AND "Header"."Flag" = "K"."企业名称"))",
         "", "KSID Long"},
    });
}

TEST(Select, QueryInFrom) {
    CheckStatements({
        {"Select Q.编号, q.c2 From (Select BillID As 编号, 金额 As c2 From 入库记录 Order By BillID) As Q Where Q.c2>1",
         R"(SELECT "Q"."编号", "Q"."c2" FROM (SELECT "入库记录"."BillID" AS "编号", "入库记录"."金额" AS "c2" )"
         R"(FROM "入库记录") AS "Q" WHERE "Q"."c2" > ?1)",
         "0 CurrencyBound", "编号 Long, c2 Currency"},
        {"Select 企业名称 From (Select 企业名称 From 厂商资料) Where 企业名称='x'",
         R"(SELECT "query 1"."企业名称" FROM (SELECT "厂商资料"."企业名称" AS "企业名称" FROM "厂商资料") AS "query 1")"
         R"( WHERE "query 1"."企业名称" COLLATE KPTEXT = ?1)",
         "0 Text", "企业名称 Text"},
        {"Select * From (Select A.KSID, B.KSID From 厂商资料 As A, 厂商资料 As B) As Q",
         R"(SELECT "Q"."KSID", "Q"."KSID:1" FROM (SELECT "A"."KSID" AS "KSID", "B"."KSID" AS "KSID:1" )"
         R"(FROM "厂商资料" AS "A", "厂商资料" AS "B") AS "Q")",
         "", "KSID Long, KSID Long"},
    });
}

TEST(Select, QualifierOfATableInsideAQueryInFrom) {
    CheckStatements({
        {"Select Proj.ClassCode From (Select Proj.ClassCode, L.pjID From 出库目录 As L Left Join 项目设置 As Proj"
         " On L.pjID=Proj.项目ID) As BILLLIST Group By BillLIST.ClassCode",
         R"(SELECT "BILLLIST"."ClassCode" FROM (SELECT "Proj"."ClassCode" AS "ClassCode", "L"."pjID" AS "pjID" )"
         R"(FROM "出库目录" AS "L" LEFT JOIN "项目设置" AS "Proj" ON "L"."pjID" = "Proj"."项目ID") AS "BILLLIST" )"
         R"(GROUP BY "BILLLIST"."ClassCode" COLLATE KPTEXT)",
         "", "ClassCode Text"},
    });
}

TEST(Select, SaysWhetherItHasOneRowAtMost) {
    const auto hasOneRow = [](std::string_view text) { return TranslatedWhole(text).hasOneRow; };
    EXPECT_TRUE(hasOneRow("Select Sum(金额) From 入库记录 Where pdID=1"));
    EXPECT_TRUE(hasOneRow("Select 企业名称 From 厂商资料 Where KSID=1"));
    EXPECT_TRUE(hasOneRow("Select 企业名称 From 厂商资料 Where 企业名称='a' And 2=KSID Order By 企业名称"));
    EXPECT_FALSE(hasOneRow("Select 企业名称 From 厂商资料 Where KSID=1 Or KSID=2"));
    EXPECT_FALSE(hasOneRow("Select 企业名称 From 厂商资料 Where KSID>1"));
    EXPECT_FALSE(hasOneRow("Select 企业名称 From 厂商资料 Where 企业名称='a'"));
    EXPECT_FALSE(hasOneRow("Select pdID, Sum(金额) From 入库记录 Group By pdID"));
    EXPECT_FALSE(hasOneRow("Select A.企业名称 From 厂商资料 As A, 厂商资料 As B Where A.KSID=1"));
    EXPECT_FALSE(hasOneRow("Select KSID From 厂商资料 Where KSID=1 Union All Select pdID From 入库记录"));
    EXPECT_FALSE(hasOneRow("Delete From 厂商资料 Where KSID=1"));
}

}  // namespace kpTables::sql::test
