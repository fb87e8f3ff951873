// The recordset that Open returns, over a driver that logs the calls to it.
#include <gtest/gtest.h>

#include "engines/FakeDriver.h"
#include "engines/common/EditableRecordset.h"
#include "engines/common/TranslatedRows.h"
#include "kpTables/Error.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using namespace test;

class Editable : public testing::Test {
protected:
    void SetUp() override {
        for (std::int32_t id = 1; id <= 2; ++id) {
            database.rows[id] = {id, std::int32_t{10 * id}, id == 1 ? "a" : "b"};
        }
        database.nextRowId = 3;
    }
    RecordsetPtr Open(std::string_view source, SourceKind kind) {
        auto query = executor->PrepareOpen(source, kind);
        auto rows = std::make_shared<engines::EditableRecordset>(
            std::make_unique<engines::TranslatedRows>(executor, std::move(query)));
        database.journal.clear();
        return rows;
    }

    FakeDatabase database;
    engines::ExecutorPtr executor = std::make_shared<engines::Executor>(std::make_unique<FakeDriver>(database));
};

TEST_F(Editable, ATableIsNeitherReadNorCountedBeforeItIsAskedFor) {
    const RecordsetPtr rows = Open("T", SourceKind::Table);
    rows->AddNew();
    rows->Fields("x").SetValue("c");
    rows->Update();
    EXPECT_EQ(database.TakeJournal(), "start to write; insert x=c");
    EXPECT_EQ(rows->RecordCount(), 3);
    EXPECT_EQ(database.TakeJournal(), "count");
    EXPECT_EQ(rows->AbsolutePosition(), 3);
    EXPECT_EQ(database.TakeJournal(), "");
    rows->MoveFirst();
    EXPECT_EQ(database.TakeJournal(), "read select k n x id []");
    EXPECT_EQ(RowsOf(*rows), "1|10|a / 2|20|b / 3|5|c");
}

TEST_F(Editable, OnlyTheFieldsThatWereSetAreWritten) {
    const RecordsetPtr rows = Open("Select x, n From T Where n=7", SourceKind::Text);
    EXPECT_FALSE(rows->Eof());
    EXPECT_EQ(database.TakeJournal(), "read select x n id [1=7]");
    rows->Fields("n").SetValue(std::int32_t{11});
    rows->Update();
    rows->MoveNext();
    rows->Fields("n").SetValue(std::int32_t{12});
    rows->MoveNext();
    EXPECT_EQ(database.TakeJournal(), "start to write; change 1 n=11; change 2 n=12");
    rows->Close();
    EXPECT_EQ(database.TakeJournal(), "save");
    EXPECT_EQ(NumberOf([&] { rows->RecordCount(); }), Code(ErrorNumber::ObjectClosed));
}

TEST_F(Editable, TheHostsTransactionIsNotEndedByClosing) {
    const RecordsetPtr rows = Open("T", SourceKind::Table);
    executor->GetTransaction().Begin();
    rows->AddNew();
    rows->Update();
    rows->Close();
    executor->GetTransaction().Commit();
    EXPECT_EQ(database.TakeJournal(), "start; insert; save");
}

TEST_F(Editable, AFailedWriteTellsOfTheRowsThatWereLostWithIt) {
    const RecordsetPtr rows = Open("T", SourceKind::Table);
    rows->AddNew();
    rows->Update();
    rows->AddNew();
    database.refuse = "the disk is full";
    const auto error = Refused([&] { rows->Update(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Description(),
              "the disk is full; rows that were written before it since the last save are lost too");
    rows->Close();
    EXPECT_EQ(database.TakeJournal(), "start to write; insert");
}

TEST_F(Editable, ARowAddedBeforeTheFetchStandsBehindTheOthersAndIsCurrent) {
    const RecordsetPtr rows = Open("T", SourceKind::Table);
    rows->AddNew();
    rows->Fields("n").SetValue(std::int32_t{30});
    rows->Update();
    rows->Find("n=30");
    EXPECT_EQ(rows->AbsolutePosition(), 3);
    EXPECT_EQ(rows->RecordCount(), 3);
}

TEST_F(Editable, ARowWhoseKeyChangesBeforeTheFetchStandsThereOnce) {
    const RecordsetPtr rows = Open("T", SourceKind::Table);
    rows->AddNew();
    rows->Fields("n").SetValue(std::int32_t{30});
    rows->Update();
    rows->Fields("k").SetValue(std::int32_t{9});
    rows->Update();
    // The table's rows as they are by then.
    database.rows[9] = database.rows[3];
    database.rows[9][0] = std::int32_t{9};
    database.rows.erase(3);
    rows->MoveFirst();
    EXPECT_EQ(RowsOf(*rows), "1|10|a / 2|20|b / 9|30|Null");
}

TEST_F(Editable, RowsBehindAnOffsetAreCountedByReadingThem) {
    const RecordsetPtr rows = Open("Select * From T Order by k Offset 1 Rows Fetch Next 1 Rows Only", SourceKind::Text);
    rows->RecordCount();
    EXPECT_TRUE(database.TakeJournal().starts_with("read"));
}

TEST_F(Editable, AChangedSchemaIsTranslatedAnew) {
    const RecordsetPtr rows = Open("Select n From T", SourceKind::Text);
    database.version = 2;
    database.schemaChanged = true;
    EXPECT_EQ(RowsOf(*rows), "10 / 20");
    EXPECT_EQ(database.TakeJournal(), "read select n id []; look at T; prepare select n id; read select n id []");
}

}  // namespace
}  // namespace kpTables
