// Who sees what, and when.
#include <gtest/gtest.h>

#include "TestBook.h"

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
    std::string path = directory.File("book");
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

TEST_F(Transactions, DoNotNestAndMustBeBegun) {
    EXPECT_TRUE(Refused([&] { book->CommitTrans(); }));
    EXPECT_TRUE(Refused([&] { book->RollbackTrans(); }));
    book->BeginTrans();
    EXPECT_TRUE(Refused([&] { book->BeginTrans(); }));
    Add("甲");
    book->CommitTrans();
    EXPECT_TRUE(Refused([&] { book->CommitTrans(); }));
    EXPECT_EQ(Seen(), "甲");
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
