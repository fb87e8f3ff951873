// The owner of a transaction, and how it ends.
#include <gtest/gtest.h>

#include "engines/FakeDriver.h"
#include "kpTables/Error.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using namespace test;

class Owners : public testing::Test {
protected:
    FakeDatabase database;
    FakeTransaction transaction{database};
};

TEST_F(Owners, RowsShareATransactionThatAnyOtherChangeEnds) {
    transaction.BeginForRows();
    transaction.BeginForRows();
    transaction.BeforeChange();
    transaction.BeforeChange();
    EXPECT_EQ(database.TakeJournal(), "start to write; save");
}

TEST_F(Owners, RowsInTheHostsTransactionStayInIt) {
    transaction.Begin();
    transaction.BeginForRows();
    transaction.CommitRows();
    transaction.BeforeChange();
    transaction.Rollback();
    EXPECT_EQ(database.TakeJournal(), "start; undo");
}

TEST_F(Owners, TheHostsTransactionSavesTheRowsBefore) {
    transaction.BeginForRows();
    transaction.Begin();
    transaction.Commit();
    EXPECT_EQ(database.TakeJournal(), "start to write; save; start; save");
}

TEST_F(Owners, ARefusedSaveOfRowsIsAbandonedAndOneOfTheHostsIsKept) {
    transaction.refuseSave = true;
    transaction.BeginForRows();
    EXPECT_EQ(NumberOf([&] { transaction.CommitRows(); }), Code(DatabaseErrorNumber::Locked));
    EXPECT_EQ(database.TakeJournal(), "start to write; save; abandon");
    transaction.Begin();
    EXPECT_EQ(NumberOf([&] { transaction.Commit(); }), Code(DatabaseErrorNumber::Locked));
    transaction.refuseSave = false;
    transaction.Commit();
    EXPECT_EQ(database.TakeJournal(), "start; save; save");
}

TEST_F(Owners, LevelsEndFromTheInside) {
    EXPECT_EQ(transaction.Begin(), 1);
    EXPECT_EQ(transaction.Begin(), 2);
    EXPECT_EQ(transaction.Begin(), 3);
    transaction.Rollback();
    transaction.Commit();
    transaction.BeginForRows();
    transaction.Commit();
    EXPECT_TRUE(Refused([&] { transaction.Commit(); }));
    EXPECT_EQ(database.TakeJournal(), "start; start level; start level; undo level; merge level; save");
}

TEST_F(Owners, ALostTransactionIsRolledBackAtEveryLevel) {
    transaction.Begin();
    transaction.Begin();
    database.open = false;
    EXPECT_TRUE(Refused([&] { transaction.Begin(); }));
    EXPECT_TRUE(Refused([&] { transaction.Commit(); }));
    transaction.Rollback();
    const auto error = Refused([&] { transaction.Commit(); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("nothing of it was saved"), std::string::npos) << error->what();
    transaction.Rollback();
    EXPECT_EQ(transaction.Begin(), 1);
}

TEST_F(Owners, RowsThatADestructorCouldNotSaveAreToldOnce) {
    transaction.refuseSave = true;
    transaction.BeginForRows();
    transaction.CloseRowsQuietly();
    EXPECT_EQ(database.TakeJournal(), "start to write; save; abandon");
    transaction.refuseSave = false;
    const auto error = Refused([&] { transaction.BeforeChange(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Locked));
    EXPECT_EQ(error->Description(), "Rows written through a recordset were not saved: in use");
    transaction.BeforeChange();
    transaction.RaiseLoss();
}

TEST_F(Owners, RowsThatWereLostAreToldBeforeOthersAreWritten) {
    transaction.BeginForRows();
    database.open = false;
    EXPECT_TRUE(Refused([&] { transaction.BeginForRows(); }));
    transaction.BeginForRows();
    transaction.CommitRows();
    EXPECT_EQ(database.TakeJournal(), "start to write; start to write; save");
}

TEST_F(Owners, ALostTransactionIsToldOnce) {
    transaction.BeginForRows();
    EXPECT_FALSE(transaction.TakeLossOfRows());
    database.open = false;
    EXPECT_TRUE(transaction.TakeLossOfRows());
    EXPECT_FALSE(transaction.TakeLossOfRows());
    transaction.Begin();
    database.open = false;
    EXPECT_TRUE(Refused([&] { transaction.BeforeChange(); }));
    EXPECT_TRUE(Refused([&] { transaction.Commit(); }));
    transaction.Rollback();
    transaction.BeforeChange();
    EXPECT_EQ(database.TakeJournal(), "start to write; start");
}

}  // namespace
}  // namespace kpTables
