// Results that are too large, and statements that never end.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "TestBook.h"
#include "kpTables/Transaction.h"

namespace kpTables {
namespace {

using namespace test;
using Clock = std::chrono::steady_clock;

/// A book with a table T of so many rows.
BookPtr BookWith(NewBookOptions options, int rows) {
    const BookPtr book = NewBook(options);
    book->Execute("CREATE TABLE T (k COUNTER PRIMARY KEY, x TEXT(200), n LONG)");
    const auto appender = book->AppendTo("T", {"x", "n"});
    Transaction transaction(*book);
    for (std::int32_t i = 0; i < rows; ++i) appender->Append({std::string(100, 'x') + std::to_string(i), i});
    transaction.Commit();
    return book;
}

TEST(MostRows, AreRefusedBeyondTheLimitAndTakenUpToIt) {
    NewBookOptions options;
    options.maxRows = 3;
    const BookPtr book = BookWith(options, 4);
    EXPECT_EQ(book->Execute("Select * From T Where n<3")->RecordCount(), 3);
    const auto error = Refused([&] { book->Execute("Select * From T"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::ResultTooLarge));
    EXPECT_EQ(error->Description(), "The result has more than 3 rows");
    EXPECT_EQ(error->Statement(), "Select * From T");
    const RecordsetPtr rows = book->Open("T", SourceKind::Table);
    EXPECT_EQ(NumberOf([&] { rows->MoveFirst(); }), Code(DatabaseErrorNumber::ResultTooLarge));
    EXPECT_EQ(ValueOf(*book, "Select Count(*) From T"), "4");
    book->Execute("Delete From T");
    EXPECT_EQ(ValueOf(*book, "Select Count(*) From T"), "0");
}

TEST(MostBytes, BoundARecordset) {
    NewBookOptions options;
    options.maxBytes = 4 << 20;
    const BookPtr book = BookWith(options, 1000);
    EXPECT_EQ(book->Execute("Select * From T")->RecordCount(), 1000);
    for (const char* text : {"Select A.x & B.x From T As A, T As B", "Select A.n,B.n,A.k,B.k From T As A, T As B"}) {
        const auto error = Refused([&] { book->Execute(text); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::ResultTooLarge)) << text;
        EXPECT_EQ(error->Description(), "The result needs more than 4 MB of memory") << text;
    }
    // A recordset that fitted takes further rows.
    const RecordsetPtr rows = book->Open("T", SourceKind::Table);
    rows->MoveFirst();
    for (int i = 0; i < 60000; ++i) {
        rows->AddNew();
        rows->SetValue(1, std::string(100, 'y') + std::to_string(i));
        rows->Update();
    }
    EXPECT_EQ(rows->RecordCount(), 61000);
}

class Interruptions : public testing::Test {
protected:
    static constexpr auto kSoon = std::chrono::milliseconds(50);
    static constexpr int kRows = 300;

    NewBookOptions Options() {
        NewBookOptions options;
        options.interrupted = [this] {
            if (Clock::now() <= deadline) return false;
            ++interruptions;
            return true;
        };
        return options;
    }
    /// The number of the error, which has to come at the first word; further statements are not interrupted.
    std::int32_t InterruptedNumber(const std::function<void()>& call) {
        interruptions = 0;
        deadline = Clock::now() + kSoon;
        const std::int32_t number = NumberOf(call);
        EXPECT_EQ(interruptions, 1);
        deadline = Clock::time_point::max();
        return number;
    }

    Clock::time_point deadline = Clock::time_point::max();
    int interruptions = 0;
    BookPtr book = BookWith(Options(), kRows);
};

constexpr const char* kEndless =
    "Select Count(*) From T As A, T As B, T As C, T As D, T As E Where A.n+B.n+C.n+D.n+E.n<0";
constexpr const char* kEndlessInsert = "Insert Into T (n) Select A.n From T As A, T As B, T As C, T As D";

TEST_F(Interruptions, EndAQuery) {
    EXPECT_EQ(InterruptedNumber([&] { book->Execute(kEndless); }), Code(DatabaseErrorNumber::Cancelled));
    EXPECT_EQ(InterruptedNumber([&] { book->Execute("Select A.x From T As A, T As B, T As C Order By B.x, A.x"); }),
              Code(DatabaseErrorNumber::Cancelled));
    EXPECT_EQ(ValueOf(*book, "Select Count(*) From T"), "300");
}

TEST_F(Interruptions, OfAQueryLeaveTheHostsTransaction) {
    Transaction transaction(*book);
    book->Execute("Insert Into T (n) Values (-1)");
    EXPECT_EQ(InterruptedNumber([&] { book->Execute(kEndless); }), Code(DatabaseErrorNumber::Cancelled));
    transaction.Commit();
    EXPECT_EQ(ValueOf(*book, "Select Count(*) From T Where n=-1"), "1");
}

TEST_F(Interruptions, OfAChangeLeaveNothingOfIt) {
    EXPECT_EQ(InterruptedNumber([&] { book->Execute(kEndlessInsert); }), Code(DatabaseErrorNumber::Cancelled));
    EXPECT_EQ(ValueOf(*book, "Select Count(*) From T"), "300");
    book->BeginTrans();
    book->Execute("Insert Into T (n) Values (-1)");
    EXPECT_EQ(InterruptedNumber([&] { book->Execute(kEndlessInsert); }), Code(DatabaseErrorNumber::Cancelled));
    EXPECT_TRUE(Refused([&] { book->CommitTrans(); }));
    book->RollbackTrans();
    EXPECT_EQ(ValueOf(*book, "Select Count(*) From T"), "300");
}

TEST_F(Interruptions, DoNotReachShortChangesNorTheEndsOfTransactions) {
    deadline = Clock::time_point::min();
    for (int i = 0; i < 2000; ++i) {
        const Transaction undone(*book);
        book->Execute("Insert Into T (n) Values (-1)");
    }
    for (int i = 0; i < 500; ++i) {
        Transaction kept(*book);
        book->Execute("Insert Into T (n) Values (-2)");
        kept.Commit();
    }
    deadline = Clock::time_point::max();
    EXPECT_EQ(ValueOf(*book, "Select Count(*) From T"), "800");
}

TEST_F(Interruptions, AreAskedForByAHostThatMayFail) {
    NewBookOptions options;
    bool failing = false;
    options.interrupted = [&failing]() -> bool {
        if (failing) Raise(ErrorNumber::InvalidCall);
        return false;
    };
    const BookPtr other = BookWith(options, kRows);
    failing = true;
    EXPECT_EQ(NumberOf([&] { other->Execute(kEndless); }), Code(DatabaseErrorNumber::Cancelled));
}

TEST(Texts, ThatWouldGrowForMinutesAreErrors) {
    const BookPtr book = NewBook();
    book->Execute("CREATE TABLE T (n LONG)");
    book->Execute("Insert Into T (n) Values (9000000)");
    for (
        const char* text :
        {"Select Replace(Replace(Replace(Space(n/90),' ',String(10,'0')),'0',String(10,'1')),'1',String(11,'2')) From T",
         "Select InStr(String(n,'a'),String(n/2,'a') & 'b') From T",
         "Select InStrRev(String(n,'a'),'b' & String(n/2,'a')) From T",
         "Select Replace(String(n,'a'),String(n/2,'a') & 'b','') From T",
         "Select n From T Where String(n,'a') Like '%' & String(n/2,'a') & 'b'"}) {
        EXPECT_EQ(NumberOf([&] { book->Execute(text); }), Code(DatabaseErrorNumber::Overflow)) << text;
    }
}

}  // namespace
}  // namespace kpTables
