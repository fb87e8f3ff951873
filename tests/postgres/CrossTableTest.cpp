// TRANSFORMs, which a server answers with cells: the same columns and rows as the embedded engine's own statements.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "kpTables/Book.h"
#include "kpTables/Error.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using namespace test;

constexpr const char* kStatements[] = {
    "CREATE TABLE P (id COUNTER PRIMARY KEY, x TEXT(20))",
    "CREATE TABLE L (p LONG, m LONG, s SHORT, k TEXT(9), q DOUBLE, c CURRENCY, f YESNO)",
    "Insert Into P (x) Values ('甲')",
    "Insert Into P (x) Values ('乙')",
    "Insert Into P (x) Values (Null)",
    "Insert Into L (p,m,s,k,q,c,f) Values (2,11,1,'a',1.5,10.25,True)",
    "Insert Into L (p,m,s,k,q,c,f) Values (2,2,1,'A',2.25,0.0001,False)",
    "Insert Into L (p,m,s,k,q,c,f) Values (2,11,2,'b',Null,-3,True)",
    "Insert Into L (p,m,s,k,q,c,f) Values (1,Null,2,'b',4,Null,True)",
    "Insert Into L (p,m,s,k,q,c,f) Values (Null,3,2,Null,8,7,False)",
    "Insert Into L (p,m,s,k,q,c,f) Values (3,-1,Null,'c',Null,Null,True)",
    "Insert Into L (p,m,s,k,q,c,f) Values (9,2,Null,'c',0.5,2,True)",
    "CREATE TABLE E (p LONG, k TEXT(9), c CURRENCY)",
    "Insert Into E (p,k,c) Values (1,'',1.5)",
    "Insert Into E (p,k,c) Values (1,Null,2)",
    "Insert Into E (p,k,c) Values (2,'~',4)",
    "Insert Into E (p,k,c) Values (2,'a',8)",
};

constexpr const char* kOverAJoin =
    "TRANSFORM Sum(B.c) AS t SELECT B.p,B.x,Sum(B.q) As q FROM (SELECT L.p,L.m,L.q,L.c,P.x FROM L LEFT JOIN P ON "
    "L.p=P.id) AS B GROUP BY B.p,B.x PIVOT B.m";

constexpr const char* kCrossTables[] = {
    "TRANSFORM Sum(c) SELECT p FROM L GROUP BY p PIVOT m",
    "TRANSFORM Sum(c) AS 合计 SELECT p,Sum(q) As 数量,Count(*) As n FROM L GROUP BY p PIVOT m",
    "TRANSFORM Count(c) AS n SELECT p FROM L GROUP BY p PIVOT m",
    "TRANSFORM Count(*) SELECT p,s FROM L GROUP BY p,s PIVOT m",
    "TRANSFORM Sum(q) SELECT s FROM L WHERE p>0 GROUP BY s PIVOT p",
    "TRANSFORM Sum(q) SELECT P.x,Count(L.q) As n FROM L LEFT JOIN P ON L.p=P.id GROUP BY L.p,P.x PIVOT L.m",
    kOverAJoin,
    "TRANSFORM Sum(c) SELECT p FROM L WHERE p=77 GROUP BY p PIVOT m",
    // What is not put together from cells.
    "TRANSFORM Sum(c) SELECT k FROM L GROUP BY k PIVOT m",
    "TRANSFORM Sum(c) SELECT p FROM L GROUP BY p PIVOT k",
    // Columns named "<>" and "", beside one whose name the server would be given for none.
    "TRANSFORM Sum(c) SELECT p FROM E GROUP BY p PIVOT k",
    "TRANSFORM Max(c) AS t SELECT p FROM E GROUP BY p PIVOT k",
    "TRANSFORM Sum(c) SELECT p FROM L GROUP BY p PIVOT f",
    "TRANSFORM Max(c) AS t SELECT p,Avg(q) As a FROM L GROUP BY p PIVOT m",
    "TRANSFORM Sum(c) SELECT p FROM L GROUP BY p ORDER BY p DESC PIVOT m",
    "TRANSFORM Sum(c) SELECT p FROM L GROUP BY p PIVOT m IN (2,5)",
    "TRANSFORM Sum(c) SELECT p FROM L GROUP BY p PIVOT m Mod 2",
};

std::string TableOf(Book& book, std::string_view text) {
    const RecordsetPtr rows = book.Execute(text);
    std::string table;
    for (int i = 0; i < rows->FieldCount(); ++i) {
        const FieldInfo& field = rows->FieldAt(i);
        table += field.name + ":" + std::to_string(static_cast<int>(field.type)) + "|";
    }
    return table + "\n" + RowsOf(*rows);
}

class CrossTables : public testing::Test {
protected:
    static void SetUpTestSuite() {
        embedded = CreateBook("memory:");
        server = NewBook();
        for (const char* statement : kStatements)
            for (const BookPtr& book : {embedded, server}) book->Execute(statement);
    }
    static void TearDownTestSuite() {
        embedded.reset();
        server.reset();
    }

    static inline BookPtr embedded;
    static inline BookPtr server;
};

TEST_F(CrossTables, AreTheSameOnBothEngines) {
    for (const char* text : kCrossTables) {
        const std::string expected = TableOf(*embedded, text);
        // The second time, the statement is prepared already.
        for (int time = 0; time < 2; ++time) EXPECT_EQ(TableOf(*server, text), expected) << text;
    }
}

TEST_F(CrossTables, AreWorkedOutByHand) {
    EXPECT_EQ(RowsOf(*server, "TRANSFORM Sum(c) AS t SELECT p,Sum(q) As q FROM L GROUP BY p PIVOT m"),
              "Null|8|7|Null|Null|Null|7|Null / 1|4|Null|Null|Null|Null|Null|Null / "
              "2|3.75|7.2501|Null|Null|0.0001|Null|7.25 / 3|Null|Null|Null|Null|Null|Null|Null / "
              "9|0.5|2|Null|Null|2|Null|Null");
}

TEST_F(CrossTables, HaveTheColumnsOfTheRowsThatThereAreNow) {
    const std::string text = "TRANSFORM Sum(q) SELECT p FROM L WHERE p=1 GROUP BY p PIVOT m";
    EXPECT_EQ(TableOf(*server, text).substr(0, 9), "p:3|<>:5|");
    server->BeginTrans();
    server->Execute("Insert Into L (p,m,q) Values (1,12,1)");
    EXPECT_EQ(RowsOf(*server, text), "1|4|1");
    server->RollbackTrans();
    EXPECT_EQ(RowsOf(*server, text), "1|4");
    server->Execute("ALTER TABLE L ADD COLUMN more LONG");
    EXPECT_EQ(RowsOf(*server, text), "1|4");
    server->Execute("ALTER TABLE L DROP COLUMN more");
}

TEST_F(CrossTables, TellOfASumThatOverflows) {
    server->BeginTrans();
    for (const char* month : {"1", "2"})
        server->Execute(std::string("Insert Into L (p,m,c) Values (5,") + month + ",900000000000000)");
    EXPECT_EQ(NumberOf([] { server->Execute("TRANSFORM Sum(c) AS t SELECT p FROM L GROUP BY p PIVOT m"); }),
              Code(DatabaseErrorNumber::Overflow));
    EXPECT_EQ(RowsOf(*server, "TRANSFORM Sum(c) SELECT p FROM L WHERE p=5 GROUP BY p PIVOT m"),
              "5|900000000000000|900000000000000");
    server->RollbackTrans();
}

TEST_F(CrossTables, CountTheirRowsAndNotTheirCells) {
    const auto book = OpenBook(server->Url(), {.maxRows = 5});
    const std::string text = "TRANSFORM Sum(c) SELECT p FROM L GROUP BY p PIVOT m";
    EXPECT_EQ(RowsOf(*book, text), RowsOf(*embedded, text));
    const auto less = OpenBook(server->Url(), {.maxRows = 4});
    EXPECT_EQ(NumberOf([&] { less->Execute(text); }), Code(DatabaseErrorNumber::ResultTooLarge));
}

}  // namespace
}  // namespace kpTables
