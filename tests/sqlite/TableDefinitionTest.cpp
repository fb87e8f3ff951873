// Second names of columns, read from the statements that SQLite keeps.
#include "engines/sqlite/TableDefinition.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "TestDatabase.h"

namespace kpTables::engines::sqlite {
namespace {

std::string Names(std::string_view createTable) {
    std::string text;
    for (const auto& [name, stored] : SecondNames(createTable)) {
        text.append(text.empty() ? "" : ", ").append(name).append(" is ").append(stored);
    }
    return text;
}

TEST(SecondNames, AreReadFromTheDefinition) {
    EXPECT_EQ(Names(R"(CREATE TABLE "T" ("a" INTEGER, "b" INTEGER AS ("a")))"), "b is a");
    EXPECT_EQ(Names(R"(CREATE TABLE T (a INT, b INT GENERATED ALWAYS AS (a) STORED, [c d] AS ( `a` ), e TEXT(5)))"),
              "b is a, c d is a");
    EXPECT_EQ(Names(R"(CREATE TABLE "T" ("a ""1""" INTEGER, "项目ID" INTEGER as ("a ""1""")))"), R"(项目ID is a "1")");
}

TEST(SecondNames, AreNoOtherExpressions) {
    EXPECT_EQ(Names(R"(CREATE TABLE "T" ("a" INTEGER, "b" INTEGER AS ("a" + 1), "c" INTEGER AS (("a"))))"), "");
    EXPECT_EQ(Names(R"(CREATE TABLE "T" ("a" TEXT DEFAULT '"b" AS ("x")', "b" TEXT, PRIMARY KEY ("a", "b")))"), "");
    EXPECT_EQ(Names(R"(CREATE TABLE "as" ("as" INTEGER CHECK ("as" > 0)))"), "");
    for (const char* text :
         {"", "CREATE TABLE", "CREATE TABLE T (", R"(CREATE TABLE T ("a)", "CREATE TABLE T (a AS ("}) {
        EXPECT_EQ(Names(text), "") << text;
    }
}

TEST(SecondNames, OfACatalogComeWithTheirColumns) {
    const test::TestDatabase database(Database(":memory:", SQLITE_OPEN_READWRITE));
    database.Execute("Create Table T (a LONG, x TEXT(20) Default '\"b\" INTEGER AS (\"a\")', b LONG As (a))");
    database.Execute("Alter Table T Add Column c LONG As (a)");
    const sql::CatalogTable& table = *database.GetCatalog().Find("t");
    ASSERT_EQ(table.columns.size(), 4u);
    EXPECT_EQ(table.columns[1].source, "");
    EXPECT_EQ(table.columns[2].source, "a");
    EXPECT_TRUE(table.columns[2].computed);
    EXPECT_EQ(table.columns[3].source, "a");
}

}  // namespace
}  // namespace kpTables::engines::sqlite
