#include <gtest/gtest.h>

#include "TestCatalog.h"
#include "TranslationText.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::sql::test {

namespace {

const std::vector<LiteralValue> kMonths = {{LiteralKind::Null, ""}, {LiteralKind::Integer, "3"}};

Translation PivotQueryOf(std::string_view text) {
    const TestCatalog catalog;
    const auto statement = parse::Parse(text);
    return TranslatePivotQuery(static_cast<const TransformStatement&>(*statement), catalog,
                               print::sqlite::SqliteEngine());
}

}  // namespace

TEST(Crosstab, ColumnsOfThePivotValues) {
    const auto translation = Translated(
        "TRANSFORM Sum(c) AS 月合计 SELECT l, Sum(d) AS 合计 FROM T WHERE s>1 GROUP BY l ORDER BY l PIVOT m", kMonths);
    EXPECT_EQ(translation.kind, StatementKind::Transform);
    EXPECT_EQ(translation.text,
              R"(SELECT "T"."l", SUM("T"."d") AS "合计", SUM("T"."c") AS "月合计", )"
              R"(SUM("T"."c") FILTER (WHERE "T"."m" IS NULL) AS "<>", SUM("T"."c") FILTER (WHERE "T"."m" IS 3) AS "3" )"
              R"(FROM "T" WHERE "T"."s" > ?1 GROUP BY "T"."l" ORDER BY "T"."l")");
    EXPECT_EQ(ParametersOf(translation), "0 Number");
    EXPECT_EQ(ColumnsOf(translation), "l Long, 合计 Double, 月合计 Currency, <> Currency, 3 Currency");
}

TEST(Crosstab, WithoutAnAliasThereIsNoTotal) {
    const auto translation = Translated("TRANSFORM Max(t) SELECT l FROM T GROUP BY l PIVOT m", kMonths);
    EXPECT_EQ(translation.text, R"(SELECT "T"."l", MAX("T"."t") FILTER (WHERE "T"."m" IS NULL) AS "<>", )"
                                R"(MAX("T"."t") FILTER (WHERE "T"."m" IS 3) AS "3" FROM "T" GROUP BY "T"."l")");
    EXPECT_EQ(Translated("TRANSFORM Max(t) SELECT l FROM T GROUP BY l PIVOT m").text,
              R"(SELECT "T"."l" FROM "T" GROUP BY "T"."l")");
}

TEST(Crosstab, ACellWithoutRowsIsNull) {
    EXPECT_EQ(Translated("TRANSFORM Count(*) SELECT l FROM T GROUP BY l PIVOT m", {{LiteralKind::Integer, "3"}}).text,
              R"(SELECT "T"."l", CASE WHEN COUNT(*) FILTER (WHERE "T"."m" IS 3) > 0 THEN )"
              R"(COUNT(*) FILTER (WHERE "T"."m" IS 3) END AS "3" FROM "T" GROUP BY "T"."l")");
}

TEST(Crosstab, PivotValuesOfEveryType) {
    struct Case {
        const char* pivot;
        LiteralValue value;
        const char* condition;
    };
    const Case cases[] = {
        {"b", {LiteralKind::Boolean, "True"}, R"("T"."b" IS -1)"},
        {"d", {LiteralKind::Decimal, "1.5"}, R"(kp_text_double("T"."d") IS '1.5')"},
        {"c", {LiteralKind::Decimal, "-12.5"}, R"("T"."c" IS -125000)"},
        {"t", {LiteralKind::Text, "it's"}, R"("T"."t" IS 'it''s')"},
        {"t & ''", {LiteralKind::Text, "x"}, R"((COALESCE("T"."t", '') || ?1) COLLATE KPTEXT IS 'x')"},
        {"at", {LiteralKind::Date, "2004-3-7"}, R"("T"."at" IS kp_to_date('2004-3-7'))"},
    };
    for (const auto& [pivot, value, condition] : cases) {
        SCOPED_TRACE(pivot);
        const auto translation =
            Translated("TRANSFORM Sum(l) SELECT s FROM T GROUP BY s PIVOT " + std::string(pivot), {value});
        EXPECT_EQ(translation.text, R"(SELECT "T"."s", CAST(SUM("T"."l") FILTER (WHERE )" + std::string(condition) +
                                        R"() AS REAL) AS ")" + value.text + R"(" FROM "T" GROUP BY "T"."s")");
    }
}

TEST(Crosstab, TheListDecidesTheColumns) {
    const auto translation = Translated("TRANSFORM Sum(c) SELECT l FROM T GROUP BY l PIVOT c2 IN (2.5, 1, Null)");
    EXPECT_EQ(
        translation.text,
        R"(SELECT "T"."l", SUM("T"."c") FILTER (WHERE "T"."c2" IS ?1) AS "2.5", )"
        R"(SUM("T"."c") FILTER (WHERE "T"."c2" IS ?2) AS "1", SUM("T"."c") FILTER (WHERE "T"."c2" IS NULL) AS "<>" )"
        R"(FROM "T" GROUP BY "T"."l")");
    EXPECT_EQ(ParametersOf(translation), "0 CurrencyBound, 1 CurrencyBound");
    EXPECT_EQ(FixedOf(translation), "0 1");
}

TEST(Crosstab, QueryOfThePivotValues) {
    auto query = PivotQueryOf("TRANSFORM Sum(c) SELECT l FROM T WHERE s>1 GROUP BY l PIVOT m");
    EXPECT_EQ(query.text, R"(SELECT DISTINCT "T"."m" FROM "T" WHERE "T"."s" > ?1 ORDER BY 1)");
    EXPECT_EQ(ParametersOf(query), "0 Number");
    EXPECT_EQ(ColumnsOf(query), "Expr1000 Short");
    query = PivotQueryOf("TRANSFORM Sum(c) SELECT l+5 FROM T WHERE True GROUP BY l PIVOT Trim(t)");
    EXPECT_EQ(query.text, R"(SELECT DISTINCT trim("T"."t") COLLATE KPTEXT FROM "T" ORDER BY 1)");
    // Nothing of the select list is left: every parameter stands in the text.
    EXPECT_EQ(ParametersOf(query), "");
}

TEST(Crosstab, Projects) {
    const auto translation = Translated(
        "TRANSFORM Sum(BILLLIST.金额) AS 月合计 SELECT BILLLIST.pjID AS pjID, Proj.ClassCode,BILLLIST.项目名称 AS "
        "项目名称, "
        "Sum(BILLLIST.数量) AS 合计 FROM (SELECT Lst.pjID, Proj.ClassCode,Proj.项目名称, Lst.月份, Rec.数量, Rec.金额 "
        "FROM "
        "(出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 项目设置 As Proj ON "
        "Lst.pjID = "
        "Proj.项目ID) AS BILLLIST GROUP BY BILLLIST.pjID,BillLIST.ClassCode, BILLLIST.项目名称 PIVOT BILLLIST.月份",
        {{LiteralKind::Integer, "1"}, {LiteralKind::Integer, "12"}});
    EXPECT_EQ(ColumnsOf(translation),
              "pjID Long, ClassCode Text, 项目名称 Text, 合计 Double, 月合计 Currency, 1 Currency, 12 Currency");
}

}  // namespace kpTables::sql::test
