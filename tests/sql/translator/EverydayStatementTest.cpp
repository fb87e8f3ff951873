// The statements that hosts write and the component does not: limits, windows, WITH, changes of joined tables.
#include "ExpressionCases.h"

namespace kpTables::sql::test {

TEST(EverydayStatement, Limits) {
    CheckStatements({
        {"Select l From T Order By l Offset 5 Rows Fetch Next 2 Rows Only",
         R"(SELECT "T"."l" FROM "T" ORDER BY "T"."l" LIMIT 2 OFFSET 5)", "", "l Long"},
        {"Select l From T Order By l Offset 5 Rows", R"(SELECT "T"."l" FROM "T" ORDER BY "T"."l" LIMIT -1 OFFSET 5)",
         "", "l Long"},
        {"Select Top 10 Percent l From T Where l > 1",
         R"(SELECT "T"."l" FROM "T" WHERE "T"."l" > ?1 LIMIT (SELECT (COUNT(*) * 10000000 + 99999999) / 100000000)"
         R"( FROM (SELECT "T"."l" FROM "T" WHERE "T"."l" > ?1) AS "all rows"))",
         "1 Number", "l Long"},
    });
    EXPECT_EQ(FixedOf(Translated("Select l From T Order By l Offset 5 Rows Fetch Next 2 Rows Only")), "0 1");
}

TEST(EverydayStatement, SetOperations) {
    CheckStatements({
        {"Select l From T Intersect Select s From T Except Select y From T",
         R"(SELECT "T"."l" FROM "T" INTERSECT SELECT "T"."s" FROM "T" EXCEPT SELECT "T"."y" FROM "T")", "", "l Long"},
    });
}

TEST(EverydayStatement, Windows) {
    CheckStatements({
        {"Select Row_Number() Over (Partition By t Order By c Desc, l) As r From T",
         R"(SELECT row_number() OVER (PARTITION BY "T"."t" ORDER BY "T"."c" DESC, "T"."l") AS "r" FROM "T")", "",
         "r Long"},
        {"Select Sum(l) Over (Order By id) From T",
         R"(SELECT CAST(SUM("T"."l") OVER (ORDER BY "T"."id") AS REAL) FROM "T")", "", "Expr1000 Double"},
        {"Select Sum(c) Over (Order By id Rows Between 2 Preceding And Current Row) From T",
         R"(SELECT SUM("T"."c") OVER (ORDER BY "T"."id" ROWS BETWEEN 2 PRECEDING AND CURRENT ROW) FROM "T")", "",
         "Expr1000 Currency"},
        {"Select Lag(t, 1, 'x') Over (Order By Trim(t)) From T",
         R"(SELECT lag("T"."t", ?1, ?2) OVER (ORDER BY trim("T"."t") COLLATE KPTEXT) FROM "T")", "0 Long, 1 Text",
         "Expr1000 Text"},
    });
}

TEST(EverydayStatement, WithIsPrintedOnce) {
    CheckStatements({
        {"With x (a, b) As (Select l, c From T Where l = 1) Select p.a, q.b From x p, x q Where p.a = q.a",
         R"(WITH "common 1" AS (SELECT "T"."l" AS "l", "T"."c" AS "c" FROM "T" WHERE "T"."l" = ?1))"
         R"( SELECT "p"."l", "q"."c" FROM "common 1" AS "p", "common 1" AS "q" WHERE "p"."l" = "q"."l")",
         "0 Number", "a Long, b Currency"},
    });
}

TEST(EverydayStatement, ChangesOfJoinedTables) {
    CheckStatements({
        {"Update T Inner Join P On T.l = P.pj Set T.c = P.id * 2",
         R"(UPDATE "T" SET "c" = "query 1"."c" FROM (SELECT "T"."id" AS "row", kp_cur_fit("P"."id" * ?1 * 10000) AS "c" FROM "T")"
         R"( INNER JOIN "P" ON "T"."l" = "P"."pj") AS "query 1" WHERE "T"."id" = "query 1"."row")",
         "0 Number"},
        {"Delete a From T a Left Join P On P.pj = a.l Where P.id Is Null",
         R"(DELETE FROM "T" WHERE "T"."id" IN (SELECT "a"."id" FROM "T" AS "a" LEFT JOIN "P" ON "P"."pj" = "a"."l")"
         R"( WHERE "P"."id" IS NULL))"},
        {"Delete Header.* From Header Inner Join P On P.pj = Header.Index",
         R"(DELETE FROM "Header" WHERE "Header".rowid IN (SELECT "Header".rowid FROM "Header" INNER JOIN "P" ON)"
         R"( "P"."pj" = "Header"."Index"))"},
    });
}

TEST(EverydayStatement, Truncate) {
    const Translation counted = Translated("Truncate Table T");
    EXPECT_EQ(counted.text, R"(DELETE FROM "T")");
    EXPECT_EQ(counted.further, std::vector<std::string>{"UPDATE sqlite_sequence SET seq = 0 WHERE name = 'T'"});
    EXPECT_TRUE(Translated("Truncate Table Header").further.empty());
}

TEST(EverydayStatement, ColumnsAreAddedOneByOne) {
    const Translation added = Translated("Alter Table Header Add a LONG, b CURRENCY Default 1.5");
    EXPECT_EQ(added.text, R"(ALTER TABLE "Header" ADD COLUMN "a" INTEGER)");
    EXPECT_EQ(added.further, std::vector<std::string>{R"(ALTER TABLE "Header" ADD COLUMN "b" CURRENCY DEFAULT 15000)"});
    const Translation dropped = Translated("Alter Table Header Drop Column Flag, Index");
    EXPECT_EQ(dropped.text, R"(ALTER TABLE "Header" DROP COLUMN "Flag")");
    EXPECT_EQ(dropped.further, std::vector<std::string>{R"(ALTER TABLE "Header" DROP COLUMN "Index")"});
}

}  // namespace kpTables::sql::test
