#include "ExpressionCases.h"

namespace kpTables::sql::test {

TEST(Comparison, Numbers) {
    CheckConditions({
        {"l=5", R"("T"."l" = ?1)", "0 Number"},
        {"5<>l", R"(?1 <> "T"."l")", "0 Number"},
        {"s>=l", R"("T"."s" >= "T"."l")"},
        {"d<2.5", R"("T"."d" < ?1)", "0 Number"},
        {"l=-3", R"("T"."l" = -?1)", "0 Number"},
        {"l='5'", R"("T"."l" = ?1)", "0 Number"},
        {"'a'='b'", "?1 COLLATE KPTEXT = ?2", "0 Text, 1 Text"},
        {"'5'=5", "?1 = ?2", "0 Number, 1 Number"},
        {"(l)=5", R"("T"."l" = ?1)", "0 Number"},
        {"l=Null", R"("T"."l" = NULL)"},
    });
}

TEST(Comparison, CurrencyMeetsItsEqualsInTenThousandths) {
    CheckConditions({
        {"c=c2", R"("T"."c" = "T"."c2")"},
        {"c>12.5", R"("T"."c" > ?1)", "0 CurrencyBound"},
        {"c<=-5", R"("T"."c" <= ?1)", "0 -CurrencyBound"},
        {"c='7'", R"("T"."c" = ?1)", "0 CurrencyBound"},
        {"c=l", R"("T"."c" = "T"."l" * 10000)"},
        {"d<c", R"("T"."d" * 10000.0 < "T"."c")"},
        {"c=l+d", R"("T"."c" = ("T"."l" + "T"."d") * 10000.0)"},
        {"c Between 1 And 2.5", R"("T"."c" BETWEEN ?1 AND ?2)", "0 CurrencyBound, 1 CurrencyBound"},
        {"c In (1,2)", R"("T"."c" IN (?1, ?2))", "0 CurrencyBound, 1 CurrencyBound"},
    });
}

TEST(Comparison, Flags) {
    CheckConditions({
        {"b", R"("T"."b")"},
        {"Not b", R"(NOT "T"."b")"},
        {"b=True", R"("T"."b" = -1)"},
        {"b=False", R"("T"."b" = 0)"},
        {"b<0", R"("T"."b" < ?1)", "0 Number"},
        {"b='True'", R"("T"."b" = ?1)", "0 Boolean"},
        {"b=(l>1)", R"("T"."b" = -("T"."l" > ?1))", "0 Number"},
        {"b Xor b2", R"("T"."b" <> "T"."b2")"},
        {"b Eqv l=1", R"("T"."b" = -("T"."l" = ?1))", "0 Number"},
        {"b Imp b2", R"(NOT "T"."b" OR "T"."b2")"},
    });
}

TEST(Comparison, Dates) {
    CheckConditions({
        {"at>=#2004-3-7#", R"("T"."at" >= ?1)", "0 Date"},
        {"at='2004-3-7'", R"("T"."at" = ?1)", "0 Date"},
        {"at<38053", R"("T"."at" < ?1)", "0 Date"},
        {"at=CAST('2004-3-7' AS DATETIME)", R"("T"."at" = ?1)", "0 Date"},
        {"at=CAST(38051 AS DATETIME)", R"("T"."at" = ?1)", "0 ServerDate"},
        {"at=CDate('2004-3-7')", R"("T"."at" = ?1)", "0 Date"},
        {"at=at2", R"("T"."at" = "T"."at2")"},
        {"at=t", R"("T"."at" = kp_to_date("T"."t"))"},
        {"at>=CAST(2004-3-1 AS DATETIME)", R"("T"."at" >= kp_server_date(?1 - ?2 - ?3))",
         "0 Number, 1 Number, 2 Number"},
        {"at Between #2004-1-1# And '2004-12-31'", R"("T"."at" BETWEEN ?1 AND ?2)", "0 Date, 1 Date"},
        {"at>Date()", R"("T"."at" > kp_date())"},
        {"at Is Not Null", R"("T"."at" IS NOT NULL)"},
    });
}

TEST(Comparison, TextsUseTheCollation) {
    CheckConditions({
        {"t='a'", R"("T"."t" = ?1)", "0 Text"},
        {"'a'=t", R"(?1 = "T"."t")", "0 Text"},
        {"t & t2='ab'", R"(kp_join("T"."t", "T"."t2") COLLATE KPTEXT = ?1)", "0 Text"},
        {"Trim(t)='a'", R"(trim("T"."t") COLLATE KPTEXT = ?1)", "0 Text"},
        {"Trim(t)=t2", R"(trim("T"."t") = "T"."t2")"},
        {"t In ('a','b')", R"("T"."t" IN (?1, ?2))", "0 Text, 1 Text"},
        {"'x' In (t,t2)", R"(?1 COLLATE KPTEXT IN ("T"."t", "T"."t2"))", "0 Text"},
        {"t Not Between 'a' And 'b'", R"("T"."t" NOT BETWEEN ?1 AND ?2)", "0 Text, 1 Text"},
        {"UCase(t) Between 'A' And t2",
         R"(kp_ucase("T"."t") COLLATE KPTEXT BETWEEN ?1 AND "T"."t2" OR )"
         R"(kp_ucase("T"."t") COLLATE KPTEXT BETWEEN "T"."t2" AND ?1)",
         "0 Text"},
    });
}

TEST(Comparison, Like) {
    CheckConditions({
        {"t Like '张%'", R"(kp_like("T"."t", ?1))", "0 Text"},
        {"t Like 'a!_' Escape '!'", R"(kp_like("T"."t", ?1, ?2))", "0 Text, 1 Text"},
        {"t Not Like 'a_'", R"(NOT kp_like("T"."t", ?1))", "0 Text"},
        {"l Like '1%'", R"(kp_like(CAST("T"."l" AS TEXT), ?1))", "0 Text"},
        {"Not (t Like 'a%' Or t Like 'b%')", R"(NOT (kp_like("T"."t", ?1) OR kp_like("T"."t", ?2)))", "0 Text, 1 Text"},
    });
}

TEST(Comparison, Logic) {
    CheckConditions({
        {"l=1 And s=2 Or d=3", R"("T"."l" = ?1 AND "T"."s" = ?2 OR "T"."d" = ?3)", "0 Number, 1 Number, 2 Number"},
        {"l=1 And (s=2 Or d=3)", R"("T"."l" = ?1 AND ("T"."s" = ?2 OR "T"."d" = ?3))", "0 Number, 1 Number, 2 Number"},
        {"l=1 And (s=2 And d=3)", R"("T"."l" = ?1 AND "T"."s" = ?2 AND "T"."d" = ?3)", "0 Number, 1 Number, 2 Number"},
        {"True And l=1", R"("T"."l" = ?1)", "0 Number"},
        {"l=1 And True", R"("T"."l" = ?1)", "0 Number"},
        {"(True) And (True And l=1)", R"("T"."l" = ?1)", "0 Number"},
        {"False Or l=1", R"("T"."l" = ?1)", "0 Number"},
        {"False And l=1", R"(0 AND "T"."l" = ?1)", "0 Number"},
        {"Not True", "0"},
        {"Not (l=1 And s=2)", R"(NOT ("T"."l" = ?1 AND "T"."s" = ?2))", "0 Number, 1 Number"},
        {"Not l=1", R"(NOT "T"."l" = ?1)", "0 Number"},
        {"(l=1)=True", R"(-("T"."l" = ?1) = -1)", "0 Number"},
        {"l In (1,2) And s Not In (3)", R"("T"."l" IN (?1, ?2) AND "T"."s" NOT IN (?3))",
         "0 Number, 1 Number, 2 Number"},
    });
}

TEST(Comparison, MembershipInAQuery) {
    CheckConditions({
        {"l In (Select BillID From 入库记录)", R"("T"."l" IN (SELECT "入库记录"."BillID" FROM "入库记录"))"},
        {"c Not In (Select 金额 From 入库记录)", R"("T"."c" NOT IN (SELECT "入库记录"."金额" FROM "入库记录"))"},
        {"l In (Select 金额 From 入库记录)", R"("T"."l" * 10000 IN (SELECT "入库记录"."金额" FROM "入库记录"))"},
        {"c In (Select 数量 From 入库记录)", R"("T"."c" / 10000.0 IN (SELECT "入库记录"."数量" FROM "入库记录"))"},
        {"5 In (Select 金额 From 入库记录)", R"(?1 IN (SELECT "入库记录"."金额" FROM "入库记录"))", "0 CurrencyBound"},
        {"'2004-3-7' In (Select 审核日期 From 入库目录)", R"(?1 IN (SELECT "入库目录"."审核日期" FROM "入库目录"))",
         "0 Date"},
        {"Trim(t) In (Select 经手人 From 入库记录)",
         R"(trim("T"."t") COLLATE KPTEXT IN (SELECT "入库记录"."经手人" FROM "入库记录"))"},
        {"Exists (Select * From Header Where Index=l)",
         R"(EXISTS (SELECT "Header"."Table", "Header"."Index", "Header"."Flag" FROM "Header")"
         R"( WHERE "Header"."Index" = "T"."l"))"},
        {"l=(Select Max(pdID) From 入库记录)", R"("T"."l" = (SELECT MAX("入库记录"."pdID") FROM "入库记录"))"},
    });
}

}  // namespace kpTables::sql::test
