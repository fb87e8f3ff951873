#include "ExpressionCases.h"

namespace kpTables::sql::test {

TEST(Group, AggregatesAndTheirTypes) {
    CheckExpressions({
        {"Count(*)", "COUNT(*)", Type::Long},
        {"Count(t)", R"(COUNT("T"."t"))", Type::Long},
        {"Count(Distinct l)", R"(COUNT(DISTINCT "T"."l"))", Type::Long},
        {"Sum(c)", R"(SUM("T"."c"))", Type::Currency},
        {"Sum(d)", R"(SUM("T"."d"))", Type::Double},
        {"Sum(s)", R"(CAST(SUM("T"."s") AS REAL))", Type::Double},
        {"Sum(c*d)", R"(SUM("T"."c" / 10000.0 * "T"."d"))", Type::Double},
        {"Avg(c)", R"(SUM("T"."c") / (COUNT("T"."c") * 10000.0))", Type::Double},
        {"Avg(l)", R"(AVG("T"."l"))", Type::Double},
        {"Min(t)", R"(MIN("T"."t"))", Type::Text},
        {"Max(Trim(t))", R"(MAX(trim("T"."t") COLLATE KPTEXT))", Type::Text},
        {"Max(at)", R"(MAX("T"."at"))", Type::Date},
        {"StDev(d)", R"(kp_stdev("T"."d"))", Type::Double},
        {"StDevP(c)", R"(kp_stdevp("T"."c" / 10000.0))", Type::Double},
        {"Var(l)", R"(kp_var("T"."l"))", Type::Double},
        {"VarP(s)", R"(kp_varp("T"."s"))", Type::Double},
        {"First(b)", R"(kp_first("T"."b"))", Type::Boolean},
        {"Last(c)", R"(kp_last("T"."c"))", Type::Currency},
        {"Sum(c)/Sum(d)", R"(kp_div(SUM("T"."c") / 10000.0, SUM("T"."d")))", Type::Double},
        {"Sum(Case s When 1 Then d Else 0 End)", R"(SUM(CASE "T"."s" WHEN ?1 THEN "T"."d" ELSE ?2 END))", Type::Double,
         "0 Number, 1 Number"},
    });
}

TEST(Group, Statements) {
    CheckStatements({
        {"Select pdID, Avg(单价) As 单价, Sum(数量) As 数量, Sum(金额) As 金额 From 入库记录 Where BillID in (Select "
         "BillID From 入库目录 Where dpID=1 And 月份<=2) Group by pdID",
         R"(SELECT "入库记录"."pdID", SUM("入库记录"."单价") / (COUNT("入库记录"."单价") * 10000.0) AS "单价", )"
         R"(SUM("入库记录"."数量") AS "数量", )"
         R"(SUM("入库记录"."金额") AS "金额" FROM "入库记录" WHERE "入库记录"."BillID" IN (SELECT "入库目录"."BillID" )"
         R"(FROM "入库目录" WHERE "入库目录"."dpID" = ?1 AND "入库目录"."月份" <= ?2) GROUP BY "入库记录"."pdID")",
         "0 Number, 1 Number", "pdID Long, 单价 Double, 数量 Double, 金额 Currency"},
        {"Select pdID, Sum(数量) As 数量 From 入库记录 Group By pdID Having (Sum(数量)>=1 And Sum(数量)<=5) And "
         "Sum(金额)>=12.5 Order By 数量 DESC, pdID",
         R"(SELECT "入库记录"."pdID", SUM("入库记录"."数量") AS "数量" FROM "入库记录" GROUP BY "入库记录"."pdID" )"
         R"(HAVING SUM("入库记录"."数量") >= ?1 AND SUM("入库记录"."数量") <= ?2 AND SUM("入库记录"."金额") >= ?3 )"
         R"(ORDER BY 2 DESC, "入库记录"."pdID")",
         "0 Number, 1 Number, 2 CurrencyBound", "pdID Long, 数量 Double"},
        {"Select 1 As a, 2 As b From 入库记录 Having Count(*)>1",
         R"(SELECT CASE WHEN COUNT(*) >= 0 THEN ?1 END AS "a", ?2 AS "b" FROM "入库记录" HAVING COUNT(*) > ?3)",
         "0 Number, 1 Number, 2 Number", "a Long, b Long"},
        {"Select pdID+1 As p, pdID+1 From 入库记录 Group By pdID+1",
         R"(SELECT "入库记录"."pdID" + ?2 AS "p", "入库记录"."pdID" + ?3 FROM "入库记录" GROUP BY "入库记录"."pdID" + ?1)",
         "2 Number, 0 Number, 1 Number", "p Long, Expr1000 Long"},
        {"Select Trim(经手人), Count(*) From 入库记录 Group By Trim(经手人)",
         R"(SELECT trim("入库记录"."经手人"), COUNT(*) FROM "入库记录" GROUP BY trim("入库记录"."经手人") COLLATE KPTEXT)",
         "", "Expr1000 Text, Expr1001 Long"},
        {"Select pdID, Count(*) From 入库记录 Group By 1",
         R"(SELECT "入库记录"."pdID", COUNT(*) FROM "入库记录" GROUP BY "入库记录"."pdID")", "",
         "pdID Long, Expr1000 Long"},
        {"Select CDATE(年份 & '-' & 月份 & '-' & 日子) As 日期, Count(*) As n From 入库目录 Group By CDATE(年份 & '-' "
         "& "
         "月份 & '-' & 日子)",
         R"(SELECT kp_ymd("入库目录"."年份", "入库目录"."月份", "入库目录"."日子") AS "日期", COUNT(*) AS "n" )"
         R"(FROM "入库目录" GROUP BY kp_ymd("入库目录"."年份", "入库目录"."月份", "入库目录"."日子"))",
         "", "日期 Date, n Long"},
        {"Select CDATE(年份 & '-' & 月份 & '-' & 日子) As 日期 From 入库目录 Where 年份=2004 And 月份=3 And 日子>0 "
         "Group By CDATE(年份 & '-' & 月份 & '-' & 日子)",
         R"(SELECT kp_ymd("入库目录"."年份", "入库目录"."月份", "入库目录"."日子") AS "日期" FROM "入库目录" )"
         R"(WHERE "入库目录"."年份" = ?1 AND "入库目录"."月份" = ?2 AND "入库目录"."日子" > ?3 )"
         R"(GROUP BY "入库目录"."年份", "入库目录"."月份", "入库目录"."日子")",
         "2 Number, 3 Number, 4 Number", "日期 Date"},
    });
}

TEST(Group, LiteralsThatMadeExpressionsEqualAreFixed) {
    EXPECT_EQ(FixedOf(Translated("Select pdID+1 As p From 入库记录 Group By pdID+1")), "0 1");
    EXPECT_EQ(FixedOf(Translated("Select pdID, Count(*) From 入库记录 Group By 1")), "0");
}

}  // namespace kpTables::sql::test
