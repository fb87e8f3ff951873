// Columns that are a second name for another column of their table: pj2 of P, whose stored columns are id, pj and name.
#include "ExpressionCases.h"

namespace kpTables::sql::test {

TEST(ComputedColumns, AreReadWhereTheyAreNamed) {
    CheckStatements({
        {"Select * From P", R"(SELECT "P"."id", "P"."pj", "P"."name" FROM "P")", "", "id Long, pj Long, name Text"},
        {"Select a.*, PJ2 From P As a", R"(SELECT "a"."id", "a"."pj", "a"."name", "a"."pj2" FROM "P" AS "a")", "",
         "id Long, pj Long, name Text, pj2 Long"},
        {"Select id From P Where pj2=3 Order By pj2 Desc",
         R"(SELECT "P"."id" FROM "P" WHERE "P"."pj2" = ?1 ORDER BY "P"."pj2" DESC)", "0 Number", "id Long"},
        {"Select l From T Where l In (Select pj2 From P)",
         R"(SELECT "T"."l" FROM "T" WHERE "T"."l" IN (SELECT "P"."pj2" FROM "P"))", "", "l Long"},
        {"Delete From P Where pj2=3", R"(DELETE FROM "P" WHERE "P"."pj2" = ?1)", "0 Number"},
    });
}

TEST(ComputedColumns, GiveWayToAStoredColumnOfTheirName) {
    CheckStatements({
        {"Select pj2 From P, Q", R"(SELECT "Q"."pj2" FROM "P", "Q")", "", "pj2 Text"},
        {"Select pj2 From P, P As a, Q", R"(SELECT "Q"."pj2" FROM "P", "P" AS "a", "Q")", "", "pj2 Text"},
        {"Select P.pj2 From P, Q", R"(SELECT "P"."pj2" FROM "P", "Q")", "", "pj2 Long"},
        {"Select pj2 From Q Where Exists (Select id From P Where pj2=3)",
         R"(SELECT "Q"."pj2" FROM "Q" WHERE EXISTS (SELECT "P"."id" FROM "P" WHERE "P"."pj2" = ?1))", "0 Number",
         "pj2 Text"},
    });
}

TEST(ComputedColumns, AreWrittenThroughTheColumnThatIsStored) {
    CheckStatements({
        {"Insert Into P (id,PJ2) Values (1,2)", R"(INSERT INTO "P" ("id", "pj") VALUES (?1, ?2))", "0 Long, 1 Long"},
        {"Insert Into P (pj2) Select l From T", R"(INSERT INTO "P" ("pj") SELECT "T"."l" FROM "T")"},
        {"Update P Set pj2=3 Where pj2=4", R"(UPDATE "P" SET "pj" = ?1 WHERE "P"."pj2" = ?2)", "0 Long, 1 Number"},
        {"Update P As a Set a.pj2=a.id", R"(UPDATE "P" AS "a" SET "pj" = "a"."id")"},
    });
}

TEST(ComputedColumns, GiveWayToTheStoredColumnWhereBothAreWritten) {
    CheckStatements({
        {"Insert Into P (pj,pj2,id) Values (1,2,3)", R"(INSERT INTO "P" ("pj", "id") VALUES (?1, ?2))",
         "0 Long, 2 Long"},
        {"Insert Into P (pj2,pj) Select l,id From T", R"(INSERT INTO "P" ("pj") SELECT "T"."id" FROM "T")"},
        {"Update P Set pj2=1,name='a',PJ=2", R"(UPDATE "P" SET "name" = ?1, "pj" = ?2)", "1 Text, 2 Long"},
    });
}

TEST(ComputedColumns, AreNoneOfTheColumnsThatAStarOrNoListStandsFor) {
    CheckStatements({
        {"Insert Into P Values (1,2,'a')", R"(INSERT INTO "P" ("id", "pj", "name") VALUES (?1, ?2, ?3))",
         "0 Long, 1 Long, 2 Text"},
        {"Insert Into P Select * From P",
         R"(INSERT INTO "P" ("id", "pj", "name") SELECT "P"."id", "P"."pj", "P"."name" FROM "P")"},
        {"Update P Set pj=pj2+1", R"(UPDATE "P" SET "pj" = kp_to_long("P"."pj2" + ?1))", "0 Number"},
    });
}

TEST(ComputedColumns, AreDefinedByTheNameOfAColumn) {
    CheckStatements({
        {"Create Table N (a LONG, b LONG AS (A), c TEXT(5), d TEXT(5) AS (c))",
         R"(CREATE TABLE "N" ("a" INTEGER, "b" INTEGER AS ("A"), "c" TEXT(5) COLLATE KPTEXT, )"
         R"("d" TEXT(5) COLLATE KPTEXT AS ("c")))"},
        {"Alter Table T Add Column l2 LONG AS (l)", R"(ALTER TABLE "T" ADD COLUMN "l2" INTEGER AS ("l"))"},
    });
}

}  // namespace kpTables::sql::test
