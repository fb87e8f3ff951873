// Who sees what, and when.
#include <gtest/gtest.h>

#include "TestBook.h"
#include "kpTables/Transaction.h"

namespace kpTables {
namespace {

using namespace test;

class Transactions : public testing::Test {
protected:
    /// What another program sees of the warehouses.
    std::string Seen() { return RowsOf(*other, "Select 仓库名称 From 仓库设置 Order By dpID"); }
    void Add(std::string_view name) {
        book->Execute(std::string("Insert Into 仓库设置 (仓库名称) Values ('").append(name).append("')"));
    }
    static void AddTo(Recordset& rows, const char* name) {
        rows.AddNew();
        rows.Fields("仓库名称").SetValue(name);
        rows.Update();
    }

    TemporaryDirectory directory;
    std::string path = directory.Book("book");
    BookPtr book = CreateBook(path);
    BookPtr other = OpenBook(path, {.busyTimeout = std::chrono::milliseconds(20)});
};

TEST_F(Transactions, AStatementIsSeenAtOnce) {
    Add("甲");
    EXPECT_EQ(Seen(), "甲");
}

TEST_F(Transactions, TheHostsTransactionIsAllOrNothing) {
    book->BeginTrans();
    Add("甲");
    EXPECT_EQ(Seen(), "");
    book->RollbackTrans();
    EXPECT_EQ(RowsOf(*book, "Select * From 仓库设置"), "");
    book->BeginTrans();
    Add("乙");
    book->CommitTrans();
    EXPECT_EQ(Seen(), "乙");
}

TEST_F(Transactions, MustBeBegun) {
    EXPECT_TRUE(Refused([&] { book->CommitTrans(); }));
    EXPECT_TRUE(Refused([&] { book->RollbackTrans(); }));
    EXPECT_EQ(book->BeginTrans(), 1);
    Add("甲");
    book->CommitTrans();
    EXPECT_TRUE(Refused([&] { book->CommitTrans(); }));
    EXPECT_TRUE(Refused([&] { book->RollbackTrans(); }));
    EXPECT_EQ(Seen(), "甲");
}

TEST_F(Transactions, ALevelCanBeUndoneAlone) {
    EXPECT_EQ(book->BeginTrans(), 1);
    Add("甲");
    EXPECT_EQ(book->BeginTrans(), 2);
    Add("乙");
    EXPECT_EQ(book->BeginTrans(), 3);
    Add("丙");
    book->CommitTrans();
    book->RollbackTrans();
    EXPECT_EQ(RowsOf(*book, "Select 仓库名称 From 仓库设置"), "甲");
    EXPECT_EQ(book->BeginTrans(), 2);
    Add("丁");
    book->CommitTrans();
    EXPECT_EQ(Seen(), "");
    book->CommitTrans();
    EXPECT_EQ(RowsOf(*other, "Select 仓库名称 From 仓库设置 Order By dpID"), "甲 / 丁");
    EXPECT_EQ(book->BeginTrans(), 1);
    book->RollbackTrans();
}

TEST_F(Transactions, ARollbackUndoesTheLevelsThatWereCommittedInside) {
    book->BeginTrans();
    book->BeginTrans();
    Add("甲");
    const RecordsetPtr rows = book->Open("仓库设置", SourceKind::Table);
    AddTo(*rows, "乙");
    rows->Close();
    book->CommitTrans();
    book->RollbackTrans();
    EXPECT_EQ(RowsOf(*book, "Select * From 仓库设置"), "");
    EXPECT_EQ(Seen(), "");
}

TEST_F(Transactions, HoldTheWriteLockFromTheirBegin) {
    book->BeginTrans();
    EXPECT_EQ(NumberOf([&] { other->Execute("Delete From 仓库设置"); }), Code(DatabaseErrorNumber::Locked));
    EXPECT_EQ(NumberOf([&] { other->BeginTrans(); }), Code(DatabaseErrorNumber::Locked));
    book->BeginTrans();
    book->CommitTrans();
    EXPECT_EQ(NumberOf([&] { other->Execute("Delete From 仓库设置"); }), Code(DatabaseErrorNumber::Locked));
    book->RollbackTrans();
    EXPECT_EQ(other->BeginTrans(), 1);
    other->RollbackTrans();
}

TEST_F(Transactions, OfAReaderSeeOneMoment) {
    Add("甲");
    const BookPtr reader = OpenBook(path, {.readOnly = true});
    EXPECT_EQ(reader->BeginTrans(), 1);
    EXPECT_EQ(RowsOf(*reader, "Select 仓库名称 From 仓库设置"), "甲");
    Add("乙");
    EXPECT_EQ(RowsOf(*reader, "Select 仓库名称 From 仓库设置"), "甲");
    EXPECT_EQ(reader->BeginTrans(), 2);
    reader->RollbackTrans();
    reader->CommitTrans();
    EXPECT_EQ(RowsOf(*reader, "Select 仓库名称 From 仓库设置 Order By dpID"), "甲 / 乙");
}

TEST_F(Transactions, AGuardRollsBackUnlessItCommits) {
    try {
        Transaction outer(*book);
        Add("甲");
        {
            Transaction inner(*book);
            EXPECT_EQ(inner.Level(), 2);
            Add("乙");
            inner.Commit();
        }
        Raise(ErrorNumber::InvalidCall);
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), Code(ErrorNumber::InvalidCall));
    }
    EXPECT_EQ(Seen(), "");
    Transaction kept(*book);
    Add("丙");
    kept.Commit();
    EXPECT_EQ(Seen(), "丙");
}

TEST_F(Transactions, ARollbackForgetsTheTablesThatItUndid) {
    book->BeginTrans();
    book->Execute("CREATE TABLE T (a LONG)");
    book->Execute("Insert Into T (a) Values (1)");
    EXPECT_EQ(RowsOf(*book, "Select * From T"), "1");
    book->RollbackTrans();
    EXPECT_EQ(NumberOf([&] { book->Execute("Select * From T"); }), Code(DatabaseErrorNumber::UnknownTable));
    book->Execute("CREATE TABLE T (b TEXT(5), c LONG)");
    book->Execute("Insert Into T (b,c) Values ('x',2)");
    EXPECT_EQ(RowsOf(*book, "Select * From T"), "x|2");
}

TEST_F(Transactions, RowsOfARecordsetAreSeenWhenItCloses) {
    const RecordsetPtr rows = book->Open("仓库设置", SourceKind::Table);
    AddTo(*rows, "甲");
    AddTo(*rows, "乙");
    EXPECT_EQ(RowsOf(*book, "Select 仓库名称 From 仓库设置"), "甲 / 乙");  // on the same connection at once
    EXPECT_EQ(NumberOf([&] { other->Execute("Delete From 仓库设置"); }), Code(DatabaseErrorNumber::Locked));
    rows->Close();
    EXPECT_EQ(Seen(), "甲 / 乙");
}

TEST_F(Transactions, RowsAreKeptWithoutClose) {
    RecordsetPtr rows = book->Open("仓库设置", SourceKind::Table);
    AddTo(*rows, "甲");
    rows.reset();
    EXPECT_EQ(Seen(), "甲");
}

TEST_F(Transactions, RowsAreKeptWhenALaterStepFails) {
    const RecordsetPtr rows = book->Open("仓库设置", SourceKind::Table);
    AddTo(*rows, "甲");
    rows->AddNew();
    rows->Fields("dpID").SetValue(rows->RecordCount() - 1);  // the key of the first row
    EXPECT_EQ(NumberOf([&] { rows->Update(); }), Code(DatabaseErrorNumber::ConstraintViolated));
    EXPECT_NE(NumberOf([&] { book->Execute("Insert Into 仓库设置 (dpID) Values (1)"); }), 0);
    EXPECT_EQ(Seen(), "甲");
    rows->Close();
    EXPECT_EQ(Seen(), "甲");
}

TEST_F(Transactions, AnotherStatementEndsTheRecordsetsTransaction) {
    const RecordsetPtr rows = book->Open("仓库设置", SourceKind::Table);
    AddTo(*rows, "甲");
    book->Execute("Select * From 仓库设置");
    EXPECT_EQ(Seen(), "");
    Add("乙");
    EXPECT_EQ(Seen(), "甲 / 乙");
    AddTo(*rows, "丙");
    EXPECT_EQ(Seen(), "甲 / 乙");
    book->BeginTrans();
    EXPECT_EQ(Seen(), "甲 / 乙 / 丙");
    book->RollbackTrans();
    EXPECT_EQ(Seen(), "甲 / 乙 / 丙");
}

TEST_F(Transactions, TwoRecordsetsShareOne) {
    const RecordsetPtr first = book->Open("仓库设置", SourceKind::Table);
    const RecordsetPtr second = book->Open("仓库设置", SourceKind::Table);
    AddTo(*first, "甲");
    AddTo(*second, "乙");
    first->Close();
    EXPECT_EQ(Seen(), "甲 / 乙");
    AddTo(*second, "丙");
    second->Close();
    EXPECT_EQ(Seen(), "甲 / 乙 / 丙");
}

TEST_F(Transactions, InsideTheHostsNothingIsCommitted) {
    const RecordsetPtr rows = book->Open("仓库设置", SourceKind::Table);
    book->BeginTrans();
    AddTo(*rows, "甲");
    rows->Close();
    EXPECT_EQ(Seen(), "");
    book->RollbackTrans();
    EXPECT_EQ(Seen(), "");
    EXPECT_EQ(RowsOf(*book, "Select * From 仓库设置"), "");
}

TEST_F(Transactions, AnOpenOneIsLostWithTheConnection) {
    book->BeginTrans();
    Add("甲");
    book.reset();
    EXPECT_EQ(Seen(), "");
}

TEST_F(Transactions, ALockedBookRefusesTheUpdateAndTakesItLater) {
    const RecordsetPtr rows = other->Open("仓库设置", SourceKind::Table);
    rows->AddNew();
    rows->Fields("仓库名称").SetValue("甲");
    book->BeginTrans();
    Add("乙");
    EXPECT_EQ(NumberOf([&] { rows->Update(); }), Code(DatabaseErrorNumber::Locked));
    book->CommitTrans();
    rows->Update();
    rows->Close();
    EXPECT_EQ(RowsOf(*book, "Select 仓库名称 From 仓库设置 Order By dpID"), "乙 / 甲");
}

}  // namespace
}  // namespace kpTables
