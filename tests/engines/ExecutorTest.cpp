// How texts become a driver's statements.
#include <gtest/gtest.h>

#include "engines/FakeDriver.h"
#include "engines/common/EngineBook.h"
#include "kpTables/Error.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using namespace test;

class Execution : public testing::Test {
protected:
    void SetUp() override {
        database.rows[1] = {std::int32_t{1}, std::int32_t{10}, "a"};
        database.nextRowId = 2;
    }

    FakeDatabase database;
    engines::ExecutorPtr executor = std::make_shared<engines::Executor>(std::make_unique<FakeDriver>(database));
};

TEST_F(Execution, ATextIsTranslatedOnceAShape) {
    executor->Execute("Select k From T Where n=1");
    EXPECT_EQ(database.TakeJournal(), "look at T; prepare select k; read select k [1=1]");
    executor->Execute("Select k From T Where n=2");
    EXPECT_EQ(database.TakeJournal(), "read select k [1=2]");
    EXPECT_EQ(executor->CachedStatements(), 1u);
}

TEST_F(Execution, AChangedSchemaEmptiesTheCache) {
    executor->Execute("Select k From T");
    database.version = 2;
    executor->Execute("Select n From T");
    EXPECT_EQ(executor->CachedStatements(), 1u);
    database.TakeJournal();
    executor->Execute("Select k From T");
    EXPECT_EQ(database.TakeJournal(), "prepare select k; read select k []");
}

TEST_F(Execution, AStatementThatRanOnAnotherSchemaIsAskedAgain) {
    executor->Execute("Select k From T");
    database.TakeJournal();
    database.version = 2;
    database.schemaChanged = true;
    executor->Execute("Select k From T");
    EXPECT_EQ(database.TakeJournal(), "read select k []; look at T; prepare select k; read select k []");
}

TEST_F(Execution, AChangeTellsItsRows) {
    EXPECT_EQ(executor->Execute("Delete From T"), nullptr);
    EXPECT_EQ(executor->RecordsAffected(), 1);
    EXPECT_EQ(database.TakeJournal(), "look at T; prepare change; run change []");
}

TEST_F(Execution, AStatementOfTheSchemaIsNotKept) {
    executor->Execute("Create Table U (a LONG)");
    EXPECT_EQ(executor->CachedStatements(), 0u);
}

TEST_F(Execution, ACrossTabAsksForItsColumnsFirst) {
    const auto rows = executor->Execute("Transform Sum(n) Select x From T Group By x Pivot k");
    EXPECT_EQ(database.TakeJournal(),
              "look at T; prepare pivot values; read pivot values []; prepare cross-tab; read cross-tab []");
    ASSERT_EQ(rows->FieldCount(), 2);
    EXPECT_EQ(rows->FieldAt(1).name, "1");
    executor->Execute("Transform Sum(n) Select x From T Group By x Pivot k In (1, 2)");
    EXPECT_EQ(database.TakeJournal(), "prepare cross-tab; read cross-tab [1=1 2=2]");
}

TEST_F(Execution, ARefusalOfTheFrontEndIsADatabaseError) {
    const auto error = Refused([&] { executor->Execute("Select From"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Syntax));
    EXPECT_EQ(error->Statement(), "Select From");
    const auto unknown = Refused([&] { executor->PrepareOpen("U", SourceKind::Table); });
    ASSERT_TRUE(unknown);
    EXPECT_EQ(unknown->Number(), Code(DatabaseErrorNumber::UnknownTable));
}

TEST_F(Execution, ABookHandsOutWhatTheDriverHas) {
    const BookPtr book = engines::MakeBook("fake:", executor);
    EXPECT_EQ(book->Url(), "fake:");
    ASSERT_EQ(book->Tables().size(), 1u);
    EXPECT_EQ(book->Tables()[0].columns[1].name, "n");
    database.TakeJournal();
    book->AppendTo("T", {"X", "n"})->Append({"c", std::int32_t{7}});
    EXPECT_EQ(database.TakeJournal(), "look at T; prepare select k n x id; insert n=7 x=c");
    EXPECT_EQ(RowsOf(*book->Open("Select x From T", SourceKind::Text)), "a / c");
    EXPECT_EQ(NumberOf([&] { book->Open("Select x + 'y' From T", SourceKind::Table); }),
              Code(DatabaseErrorNumber::UnknownTable));
}

TEST_F(Execution, ABackUpSavesTheRecordsetsRowsFirst) {
    const BookPtr book = engines::MakeBook("fake:", executor);
    const RecordsetPtr rows = book->Open("T", SourceKind::Table);
    rows->AddNew();
    rows->Update();
    database.TakeJournal();
    book->BackUp("copy");
    EXPECT_EQ(database.TakeJournal(), "save; back up to copy");
    book->BeginTrans();
    EXPECT_TRUE(Refused([&] { book->BackUp("copy"); }));
}

}  // namespace
}  // namespace kpTables
