// Statements are translated once a shape.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "TestBook.h"
#include "TestDatabase.h"

namespace kpTables {
namespace {

using namespace test;

class Cache : public testing::Test {
protected:
    Cache() : session(engines::sqlite::Database(":memory:", SQLITE_OPEN_READWRITE)) {
        session.Execute("CREATE TABLE T (a LONG, x TEXT(50))");
    }
    std::string Value(std::string_view text) {
        const RecordsetPtr rows = session.Execute(text);
        return test::RowsOf(*rows);
    }

    TestDatabase session;
};

TEST_F(Cache, DistinctLiteralsShareAStatement) {
    for (int i = 0; i < 100000; ++i) {
        session.Execute("Insert Into T (a, x) Values (" + std::to_string(i) + ", 'x" + std::to_string(i) + "')");
    }
    EXPECT_EQ(session.CachedStatements(), 1u);
    EXPECT_EQ(Value("Select a, x From T Where a=77777"), "77777|x77777");
    EXPECT_EQ(Value("Select a, x From T Where a=5"), "5|x5");
    EXPECT_EQ(session.CachedStatements(), 2u);
}

TEST_F(Cache, LiteralsThatShapeAStatementKeepItApart) {
    for (const char* values : {"3, 'c'", "1, 'a'", "2, 'b'"}) {
        session.Execute(std::string("Insert Into T (a, x) Values (").append(values).append(")"));
    }
    EXPECT_EQ(Value("Select Top 2 a From T Order By a"), "1 / 2");
    EXPECT_EQ(Value("Select Top 1 a From T Order By a"), "1");
    EXPECT_EQ(Value("Select Top 2 a From T Order By a"), "1 / 2");
    EXPECT_EQ(Value("Select x, a From T Order By 1"), "a|1 / b|2 / c|3");
    EXPECT_EQ(Value("Select x, a From T Order By 2"), "a|1 / b|2 / c|3");
    EXPECT_EQ(Value("Select x, a From T Order By 2 Desc"), "c|3 / b|2 / a|1");
}

TEST_F(Cache, IsBounded) {
    session.Execute("Insert Into T (a) Values (1)");
    std::string text = "Select a";
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(Value(text + " From T"), i == 0 ? "1" : Value(text + " From T"));
        text = "Select a As n" + std::to_string(i);
        ASSERT_LE(session.CachedStatements(), engines::StatementCache::kCapacity);
    }
    EXPECT_EQ(session.CachedStatements(), engines::StatementCache::kCapacity);
    EXPECT_EQ(Value("Select a As n0 From T"), "1");
}

TEST_F(Cache, AFailedStatementCanBeSentAgain) {
    EXPECT_NE(NumberOf([&] { session.Execute("Select 1/0 As q"); }), 0);
    EXPECT_EQ(Value("Select 1/4 As q"), "0.25");
    EXPECT_NE(NumberOf([&] { session.Execute("Insert Into T (a) Values ('x')"); }), 0);
    session.Execute("Insert Into T (a) Values ('7')");
    EXPECT_EQ(Value("Select a From T"), "7");
}

}  // namespace
}  // namespace kpTables
