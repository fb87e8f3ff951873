#include "ExpressionCases.h"
#include "sql/print/sqlite/DeclaredType.h"

namespace kpTables::sql::test {

using namespace print::sqlite;

TEST(Definitions, Tables) {
    CheckStatements({
        {"CREATE TABLE N (a COUNTER PRIMARY KEY, b LONG NOT NULL, c SHORT DEFAULT 0, d DOUBLE DEFAULT 1.5, e CURRENCY "
         "DEFAULT 12.5, f DATETIME, g YESNO DEFAULT True, h TEXT(20) DEFAULT 'it''s' UNIQUE, i MEMO, j TEXT)",
         R"(CREATE TABLE "N" ("a" INTEGER PRIMARY KEY AUTOINCREMENT, "b" INTEGER NOT NULL, "c" SMALLINT DEFAULT 0, )"
         R"("d" DOUBLE DEFAULT 1.5, "e" CURRENCY DEFAULT 125000, "f" DATETIME_TEXT, "g" YESNO DEFAULT -1, )"
         R"("h" TEXT(20) COLLATE KPTEXT UNIQUE DEFAULT 'it''s', "i" LONGTEXT COLLATE KPTEXT, )"
         R"("j" TEXT(255) COLLATE KPTEXT))"},
        {"CREATE TABLE N (a YESNO, b BIT NOT NULL, c YESNO DEFAULT Null)",
         R"(CREATE TABLE "N" ("a" YESNO DEFAULT 0, "b" YESNO NOT NULL DEFAULT 0, "c" YESNO DEFAULT NULL))"},
        {"CREATE TABLE N (a SHORT DEFAULT -32768, b LONG DEFAULT 2147483647)",
         R"(CREATE TABLE "N" ("a" SMALLINT DEFAULT -32768, "b" INTEGER DEFAULT 2147483647))"},
        {"CREATE TABLE N (a LONG PRIMARY KEY)", R"(CREATE TABLE "N" ("a" INTEGER PRIMARY KEY))"},
        {"CREATE TABLE N (a LONG, CONSTRAINT k PRIMARY KEY (A))", R"(CREATE TABLE "N" ("a" INTEGER PRIMARY KEY))"},
        {"CREATE TABLE N (a TEXT(5) PRIMARY KEY, b CURRENCY DEFAULT 0)",
         R"(CREATE TABLE "N" ("a" TEXT(5) COLLATE KPTEXT NOT NULL, "b" CURRENCY DEFAULT 0, PRIMARY KEY ("a")))"},
        {"CREATE TABLE N (a LONG, b SHORT, c LONG, PRIMARY KEY (a,b), UNIQUE (c,b))",
         R"(CREATE TABLE "N" ("a" INTEGER NOT NULL, "b" SMALLINT NOT NULL, "c" INTEGER, PRIMARY KEY ("a", "b"), )"
         R"(UNIQUE ("c", "b")))"},
        {"CREATE TABLE N (a COUNTER, b TEXT(5) PRIMARY KEY)",
         R"(CREATE TABLE "N" ("a" INTEGER PRIMARY KEY AUTOINCREMENT, "b" TEXT(5) COLLATE KPTEXT NOT NULL, UNIQUE ("b")))"},
        {"CREATE TABLE N (a LONG DEFAULT -1, b CURRENCY DEFAULT -0.5, c YESNO DEFAULT 1, d DATETIME DEFAULT Date(), e "
         "DATETIME DEFAULT '2004-3-7', f LONG DEFAULT '7', g TEXT(3) DEFAULT 0)",
         R"(CREATE TABLE "N" ("a" INTEGER DEFAULT -1, "b" CURRENCY DEFAULT -5000, "c" YESNO DEFAULT -1, )"
         R"("d" DATETIME_TEXT DEFAULT (kp_date()), "e" DATETIME_TEXT DEFAULT (kp_to_date('2004-3-7')), )"
         R"("f" INTEGER DEFAULT 7, "g" TEXT(3) COLLATE KPTEXT DEFAULT '0'))"},
    });
}

TEST(Definitions, EveryLiteralIsFixed) {
    EXPECT_EQ(FixedOf(Translated("CREATE TABLE N (a TEXT(20), b LONG DEFAULT 5)")), "0 1");
}

TEST(Definitions, IndexesAndChanges) {
    CheckStatements({
        {"CREATE INDEX 日期 ON 入库目录 (年份, 月份 DESC)",
         R"(CREATE INDEX "入库目录.日期" ON "入库目录" ("年份", "月份" DESC))"},
        {"CREATE UNIQUE INDEX k ON header (TABLE)", R"(CREATE UNIQUE INDEX "Header.k" ON "Header" ("Table"))"},
        {"DROP INDEX k ON HEADER", R"(DROP INDEX "Header.k")"},
        {"DROP TABLE t", R"(DROP TABLE "T")"},
        {"ALTER TABLE Header ADD 宽 YESNO", R"(ALTER TABLE "Header" ADD COLUMN "宽" YESNO DEFAULT 0)"},
        {"ALTER TABLE Header ADD COLUMN 宽 CURRENCY DEFAULT 1",
         R"(ALTER TABLE "Header" ADD COLUMN "宽" CURRENCY DEFAULT 10000)"},
    });
}

TEST(Definitions, DeclaredTypesReadBack) {
    struct Case {
        const char* declared;
        bool autoincrement;
        Type type;
        bool counter;
        int length = 0;
    };
    const Case cases[] = {
        {"INTEGER", true, Type::Long, true},        {"INTEGER", false, Type::Long, false},
        {"SMALLINT", false, Type::Short, false},    {"DOUBLE", false, Type::Double, false},
        {"CURRENCY", false, Type::Currency, false}, {"DATETIME_TEXT", false, Type::Date, false},
        {"YESNO", false, Type::Boolean, false},     {"TEXT(20)", false, Type::Text, false, 20},
        {"LONGTEXT", false, Type::Text, false},     {"text(5)", false, Type::Text, false, 5},
        {"TEXT", false, Type::Text, false},         {"BLOB", false, Type::Unknown, false},
        {"", false, Type::Unknown, false},          {"DECIMAL(10,2)", false, Type::Currency, false},
    };
    for (const auto& [declared, autoincrement, type, counter, length] : cases) {
        SCOPED_TRACE(declared);
        const auto column = ColumnOfDeclaredType("名", declared, autoincrement);
        EXPECT_EQ(column.name, "名");
        EXPECT_EQ(NameOf(column.type), NameOf(type));
        EXPECT_EQ(column.counter, counter);
        EXPECT_EQ(column.length, length);
    }
}

}  // namespace kpTables::sql::test
