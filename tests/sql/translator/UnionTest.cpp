#include "ExpressionCases.h"

namespace kpTables::sql::test {

TEST(Union, MembersAndTheirOrder) {
    CheckStatements({
        {"Select BillID From 入库目录 Union All Select BillID From 出库目录",
         R"(SELECT "入库目录"."BillID" FROM "入库目录" UNION ALL SELECT "出库目录"."BillID" FROM "出库目录")", "",
         "BillID Long"},
        {"Select BillID As 号 From 入库目录 Union Select BillID From 出库目录 Order By 号 DESC",
         R"(SELECT "入库目录"."BillID" AS "号" FROM "入库目录" UNION SELECT "出库目录"."BillID" FROM "出库目录")"
         R"( ORDER BY 1 DESC)",
         "", "号 Long"},
        {"(Select 年份, 月份 From 入库目录 Order By 月份) Union (Select 年份, 月份 From 出库目录 Order By 月份)",
         R"(SELECT "入库目录"."年份", "入库目录"."月份" FROM "入库目录" UNION SELECT "出库目录"."年份", )"
         R"("出库目录"."月份" FROM "出库目录" ORDER BY 2)",
         "", "年份 Short, 月份 Short"},
        {"(Select 年份, 月份 From 入库目录 Order By 月份) Union (Select 年份, 月份 From 出库目录 Order By 年份)",
         R"(SELECT "入库目录"."年份", "入库目录"."月份" FROM "入库目录" UNION SELECT "出库目录"."年份", )"
         R"("出库目录"."月份" FROM "出库目录")",
         "", "年份 Short, 月份 Short"},
    });
}

TEST(Union, OrderInsideTheMembersOfTheDatesOfBills) {
    CheckStatements({
        {"SELECT Distinct CDATE([list1].年份 & '-' &  [list1].月份 & '-' & [list1].日子) AS 日期 FROM 入库目录 as "
         "list1  "
         "ORDER BY CDATE([list1].年份 & '-' &  [list1].月份 & '-' & [list1].日子) UNION (SELECT Distinct "
         "CDATE([list2].年份 & '-' &  [list2].月份 & '-' & [list2].日子) AS 日期 FROM 出库目录 AS list2 ORDER BY "
         "CDATE([list2].年份 & '-' &  [list2].月份 & '-' & [list2].日子))",
         R"(SELECT DISTINCT kp_ymd("list1"."年份", "list1"."月份", "list1"."日子") AS "日期" FROM "入库目录" AS "list1" )"
         R"(UNION SELECT DISTINCT kp_ymd("list2"."年份", "list2"."月份", "list2"."日子") AS "日期" )"
         R"(FROM "出库目录" AS "list2" ORDER BY 1)",
         "", "日期 Date"},
    });
}

// SQLite loses the GROUP BY of the last member where a key names a collation.
TEST(Union, OrderByATextThatIsComparedNamesNoCollation) {
    CheckStatements({
        {"Select Trim(经手人) As x From 入库记录 Union Select Max(经手人) From 入库记录 Group By pdID Order By x Desc",
         R"(SELECT trim("入库记录"."经手人") COLLATE KPTEXT AS "x" FROM "入库记录" UNION )"
         R"(SELECT MAX("入库记录"."经手人") COLLATE KPTEXT FROM "入库记录" GROUP BY "入库记录"."pdID" ORDER BY 1 DESC)",
         "", "x Text"},
        {"Select Trim(经手人) As x From 入库记录 Union All Select Max(经手人) From 入库记录 Order By x",
         R"(SELECT trim("入库记录"."经手人") AS "x" FROM "入库记录" UNION ALL )"
         R"(SELECT MAX("入库记录"."经手人") FROM "入库记录" ORDER BY 1 COLLATE KPTEXT)",
         "", "x Text"},
    });
}

TEST(Union, ColumnsHaveOneType) {
    CheckStatements({
        {"Select 金额 From 入库记录 Union Select pdID From 入库记录",
         R"(SELECT "入库记录"."金额" FROM "入库记录" UNION SELECT "入库记录"."pdID" * 10000 FROM "入库记录")", "",
         "金额 Currency"},
        {"Select 金额 From 入库记录 Union All Select 数量 From 入库记录",
         R"(SELECT "入库记录"."金额" / 10000.0 FROM "入库记录" UNION ALL SELECT "入库记录"."数量" FROM "入库记录")", "",
         "金额 Double"},
        {"Select Null As x From 入库记录 Union Select 经手人 & '' From 入库记录",
         R"(SELECT NULL COLLATE KPTEXT AS "x" FROM "入库记录" UNION SELECT (COALESCE("入库记录"."经手人", '') || ?1) COLLATE KPTEXT )"
         R"(FROM "入库记录")",
         "0 Text", "x Text"},
    });
}

TEST(Union, AMemberWithATopIsATable) {
    CheckStatements({
        {"(Select Top 1 BillID From 入库目录 Order By BillID DESC) Union Select BillID From 出库目录",
         R"(SELECT "query 1"."BillID" FROM (SELECT "入库目录"."BillID" AS "BillID" FROM "入库目录" )"
         R"(ORDER BY "入库目录"."BillID" DESC LIMIT 1) AS "query 1" UNION SELECT "出库目录"."BillID" FROM "出库目录")",
         "", "BillID Long"},
    });
}

TEST(Union, InFromAndInIn) {
    CheckStatements({
        {"Select Count(*) As n From (Select BillID From 入库目录 Union Select BillID From 出库目录) As U",
         R"(SELECT COUNT(*) AS "n" FROM (SELECT "入库目录"."BillID" AS "BillID" FROM "入库目录" UNION )"
         R"(SELECT "出库目录"."BillID" AS "BillID" FROM "出库目录") AS "U")",
         "", "n Long"},
    });
    CheckConditions({
        {"l In (Select BillID From 入库目录 Union Select BillID From 出库目录)",
         R"("T"."l" IN (SELECT "入库目录"."BillID" FROM "入库目录" UNION SELECT "出库目录"."BillID" FROM "出库目录"))"},
    });
}

}  // namespace kpTables::sql::test
