#include "ExpressionCases.h"

namespace kpTables::sql::test {

TEST(Insert, LiteralsAreBoundAsTheirColumns) {
    CheckStatements({
        {"Insert Into T (s,l,d,c,b,t,at) Values (1,2,3,4.5,1,'x','2004-3-7')",
         R"(INSERT INTO "T" ("s", "l", "d", "c", "b", "t", "at") VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7))",
         "0 Short, 1 Long, 2 Number, 3 Currency, 4 Boolean, 5 Text, 6 Date"},
        {"Insert Into T (s,l,c,b,t,at) Values ('1','2','4.5',True,5,#2004-3-7#)",
         R"(INSERT INTO "T" ("s", "l", "c", "b", "t", "at") VALUES (?1, ?2, ?3, -1, ?4, ?5))",
         "0 Short, 1 Long, 2 Currency, 3 Text, 4 Date"},
        {"Insert Into T (s,l,d,c,b) Values (-1,-2,-3.5,-4.5,-1)",
         R"(INSERT INTO "T" ("s", "l", "d", "c", "b") VALUES (kp_to_short(-?1), -?2, -?3, ?4, -(-?5 <> 0)))",
         "0 Number, 1 Number, 2 Number, 3 -Currency, 4 Number"},
        {"Insert Into Q (pj2) Values ('a')", R"(INSERT INTO "Q" ("pj2") VALUES (kp_fit(?1, 5, 'pj2')))", "0 Text"},
        {"Insert Into Q (pj2) Values (Null)", R"(INSERT INTO "Q" ("pj2") VALUES (NULL))"},
        {"Insert Into Q (pj2) Select l From T",
         R"(INSERT INTO "Q" ("pj2") SELECT kp_fit(CAST("T"."l" AS TEXT), 5, 'pj2') FROM "T")"},
        {"Insert Into T (l,c,at) Values (Null,Null,Null)",
         R"(INSERT INTO "T" ("l", "c", "at") VALUES (NULL, NULL, NULL))"},
        {"Insert Into Header Values ('a',1,'b')",
         R"(INSERT INTO "Header" ("Table", "Index", "Flag") VALUES (?1, ?2, ?3))", "0 Text, 1 Long, 2 Text"},
        {"Insert Into T (l,at) Values (1+2, Date())",
         R"(INSERT INTO "T" ("l", "at") VALUES (kp_to_long(?1 + ?2), kp_date()))", "0 Number, 1 Number"},
    });
}

TEST(Insert, RowsOfAQueryAreConverted) {
    CheckStatements({
        {"Insert Into T (l,c,t,d) Select l,l,l,c From T",
         R"(INSERT INTO "T" ("l", "c", "t", "d") SELECT "T"."l", "T"."l" * 10000, CAST("T"."l" AS TEXT), )"
         R"("T"."c" / 10000.0 FROM "T")"},
        {"Insert Into T (c) Select Top 3 d From T Order By d",
         R"(INSERT INTO "T" ("c") SELECT kp_to_currency("query 1"."d") FROM (SELECT "T"."d" AS "d" FROM "T" )"
         R"(ORDER BY "T"."d" LIMIT 3) AS "query 1")"},
        {"Insert Into T (l) Select BillID From 入库目录 Union Select BillID From 出库目录",
         R"(INSERT INTO "T" ("l") SELECT kp_to_long("query 1"."BillID") FROM (SELECT "入库目录"."BillID" AS "BillID" )"
         R"(FROM "入库目录" UNION SELECT "出库目录"."BillID" AS "BillID" FROM "出库目录") AS "query 1")"},
    });
}

TEST(Update, ValuesAreConverted) {
    CheckStatements({
        {"Update T Set s=1 ,l=2, c=3, t='x' Where id=9",
         R"(UPDATE "T" SET "s" = ?1, "l" = ?2, "c" = ?3, "t" = ?4 WHERE "T"."id" = ?5)",
         "0 Short, 1 Long, 2 Currency, 3 Text, 4 Number"},
        {"Update T As X Set X.c=x.d*2, d=c, s=l, l=s, l=l+1",
         R"(UPDATE "T" AS "X" SET "c" = kp_to_currency("X"."d" * ?1), "d" = "X"."c" / 10000.0, )"
         R"("s" = kp_to_short("X"."l"), "l" = "X"."s", "l" = kp_to_long("X"."l" + ?2))",
         "0 Number, 1 Number"},
        {"Update T Set c=c+c2, d=d*2",
         R"(UPDATE "T" SET "c" = kp_cur_fit("T"."c" + "T"."c2"), "d" = kp_to_double("T"."d" * ?1))", "0 Number"},
        {"Update T Set c=l*s, c=l+1",
         R"(UPDATE "T" SET "c" = kp_cur_fit("T"."l" * "T"."s" * 10000), )"
         R"("c" = kp_cur_fit(("T"."l" + ?1) * 10000))",
         "0 Number"},
        {"Update T Set b=False, b2=l, at=t, t=at, c=c2",
         R"(UPDATE "T" SET "b" = 0, "b2" = -("T"."l" <> 0), "at" = kp_to_date("T"."t"), "t" = kp_text_date("T"."at"), )"
         R"("c" = "T"."c2")"},
        {"Update T Set b=(l>1), at=#2004-3-7# Where t='it''s'",
         R"(UPDATE "T" SET "b" = -("T"."l" > ?1), "at" = ?2 WHERE "T"."t" = ?3)", "0 Number, 1 Date, 2 Text"},
        {"Update 仓库设置 Set 结帐标志=1 Where dpID=2",
         R"(UPDATE "仓库设置" SET "结帐标志" = ?1 WHERE "仓库设置"."dpID" = ?2)", "0 Boolean, 1 Number"},
    });
}

TEST(Delete, Rows) {
    CheckStatements({
        {"Delete from 入库目录", R"(DELETE FROM "入库目录")"},
        {"Delete * From T Where True ", R"(DELETE FROM "T")"},
        {"Delete From T As X Where X.l<5", R"(DELETE FROM "T" AS "X" WHERE "X"."l" < ?1)", "0 Number"},
        {"Delete From Header Where Table='x' And Flag='y'",
         R"(DELETE FROM "Header" WHERE "Header"."Table" = ?1 AND "Header"."Flag" = ?2)", "0 Text, 1 Text"},
    });
}

}  // namespace kpTables::sql::test
