// Full disks, refused commits and damaged books.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdio>
#include <optional>

#include "TestBook.h"
#include "TestDatabase.h"
#include "engines/common/EditableRecordset.h"
#include "engines/common/TranslatedRows.h"
#include "engines/sqlite/Database.h"
#include "engines/sqlite/RowReader.h"
#include "kpTables/Convert.h"

namespace kpTables {
namespace {

using namespace test;

class Failures : public testing::Test {
protected:
    Failures()
        : session(std::make_shared<TestDatabase>(
              engines::sqlite::Database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE))) {
        session->GetDatabase().Run("PRAGMA journal_mode = WAL");
        session->Execute(
            "CREATE TABLE T (k COUNTER PRIMARY KEY, c CURRENCY, d DATETIME, b YESNO, n LONG, x TEXT(250))");
    }
    std::shared_ptr<engines::EditableRecordset> OpenTable() {
        return std::make_shared<engines::EditableRecordset>(std::make_unique<engines::TranslatedRows>(
            session->GetExecutor(), session->PrepareOpen("T", SourceKind::Table)));
    }
    static void Add(Recordset& rows) {
        rows.AddNew();
        rows.Fields("x").SetValue(std::string(200, 'x'));
        rows.Update();
    }
    std::string Count() { return Text(session->Execute("Select Count(*) From T")->GetValue(0)); }

    TemporaryDirectory directory;
    std::string path = directory.File("db");
    std::shared_ptr<TestDatabase> session;
};

TEST_F(Failures, AFullDiskIsToldWithTheRowsThatItCost) {
    const auto saved = OpenTable();
    Add(*saved);
    saved->Close();
    const auto rows = OpenTable();
    session->GetDatabase().Run("PRAGMA max_page_count = 30");
    std::optional<DatabaseError> error;
    for (int i = 0; i < 10000 && !error; ++i) {
        try {
            Add(*rows);
        } catch (const DatabaseError& raised) {
            error = raised;
        }
    }
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::DiskFull));
    EXPECT_NE(error->Description().find("disk is full"), std::string::npos) << error->what();
    EXPECT_NE(error->Description().find("lost too"), std::string::npos) << error->what();
    rows->Close();
    EXPECT_EQ(Count(), "1");
    session->GetDatabase().Run("PRAGMA max_page_count = 1000");
    const auto again = OpenTable();
    Add(*again);
    again->Close();
    EXPECT_EQ(Count(), "2");
}

TEST_F(Failures, ARefusedCommitIsRaisedByCloseOrByTheNextUse) {
    sqlite3_commit_hook(
        session->GetDatabase().Get(), [](void*) { return 1; }, nullptr);
    auto rows = OpenTable();
    Add(*rows);
    EXPECT_NE(NumberOf([&] { rows->Close(); }), 0);
    EXPECT_EQ(NumberOf([&] { rows->RecordCount(); }), Code(ErrorNumber::ObjectClosed));
    auto dropped = OpenTable();
    Add(*dropped);
    dropped.reset();
    sqlite3_commit_hook(session->GetDatabase().Get(), nullptr, nullptr);
    EXPECT_FALSE(session->GetDatabase().InTransaction());
    const auto told = Refused([&] { Count(); });
    ASSERT_TRUE(told);
    EXPECT_NE(told->Description().find("were not saved"), std::string::npos) << told->what();
    EXPECT_EQ(Count(), "0");
    session->Execute("Insert Into T (n) Values (1)");
    EXPECT_EQ(Count(), "1");
}

TEST_F(Failures, ATransactionThatWasLostIsTold) {
    session->GetTransaction().Begin();
    session->Execute("Insert Into T (n) Values (1)");
    session->GetDatabase().Run("ROLLBACK");  // as SQLite does after some failures of the disk
    EXPECT_NE(NumberOf([&] { session->Execute("Insert Into T (n) Values (2)"); }), 0);
    EXPECT_NE(NumberOf([&] { session->GetTransaction().Commit(); }), 0);
    EXPECT_NE(NumberOf([&] { session->GetTransaction().Begin(); }), 0);
    session->GetTransaction().Rollback();
    EXPECT_EQ(Count(), "0");
    const auto rows = OpenTable();
    Add(*rows);
    session->GetDatabase().Run("ROLLBACK");
    EXPECT_NE(NumberOf([&] { rows->Close(); }), 0);
    session->Execute("Insert Into T (n) Values (2)");
    EXPECT_EQ(Count(), "1");
}

TEST_F(Failures, DamagedCellsAreReadAsTheyAre) {
    session->GetDatabase().Run("INSERT INTO T VALUES (1, 'abc', 'x', 'y', 'z', 5)");
    session->GetDatabase().Run("INSERT INTO T VALUES (2, 12345.5, 38053, 2.5, 1.5, x'414243')");
    const RecordsetPtr rows = session->Execute("Select c, d, b, n, x From T Order By k");
    EXPECT_EQ(RowsOf(*rows), "abc|x|y|z|5 / 1.2346|38053|True|1.5|ABC");
    const auto editable = OpenTable();
    EXPECT_EQ(RowsOf(*editable), "1|abc|x|y|z|5 / 2|1.2346|38053|True|1.5|ABC");
    editable->MoveFirst();
    editable->Fields("n").SetValue(std::int32_t{7});
    editable->Update();
    EXPECT_EQ(Text(session->Execute("Select n From T Where k=1")->GetValue(0)), "7");
    editable->Sort("c");
    editable->Find("n=7");
    EXPECT_FALSE(editable->Eof());
}

TEST_F(Failures, ADamagedPageIsAnErrorAndNoCrash) {
    for (int i = 0; i < 500; ++i) session->Execute("Insert Into T (n, x) Values (1, '" + std::string(200, 'x') + "')");
    session->GetDatabase().Run("PRAGMA wal_checkpoint(TRUNCATE)");
    session.reset();
    std::string bytes;
    {
        std::FILE* file = std::fopen(path.c_str(), "r+b");
        ASSERT_TRUE(file);
        std::fseek(file, 3 * 4096, SEEK_SET);
        const std::string junk(8 * 4096, '\xA5');
        ASSERT_EQ(std::fwrite(junk.data(), 1, junk.size(), file), junk.size());
        std::fclose(file);
    }
    const TestDatabase damaged(engines::sqlite::Database(path, SQLITE_OPEN_READWRITE));
    const auto error = Refused([&] { damaged.Execute("Select * From T"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Damaged));
    EXPECT_NE(error->Description().find("damaged"), std::string::npos) << error->what();
}

TEST(ReadRows, ACellCostsSixteenBytesAtMostBesideItsText) {
    const engines::sqlite::Database database(":memory:", SQLITE_OPEN_READWRITE);
    constexpr std::size_t kRows = 100000;
    constexpr std::size_t kTextBytes = 12;
    engines::sqlite::PreparedStatement statement = database.Prepare(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000) "
        "SELECT i, i * 2.5, i * 10000, printf('%012d', i), NULL, i % 2, i + 1, i * 0.5, -i, '1997-01-02' FROM n");
    const auto rows = engines::sqlite::ReadRows(statement,
                                                recordset::ShareFields({{"a", VarType::Long},
                                                                        {"b", VarType::Double},
                                                                        {"c", VarType::Currency},
                                                                        {"d", VarType::String},
                                                                        {"e", VarType::Empty},
                                                                        {"f", VarType::Boolean},
                                                                        {"g", VarType::Integer},
                                                                        {"h", VarType::Double},
                                                                        {"i", VarType::Long},
                                                                        {"j", VarType::Date}}),
                                                "");
    ASSERT_EQ(rows->Rows(), kRows);
    EXPECT_LE(rows->Bytes(), kRows * 10 * 16 + kRows * kTextBytes);
    EXPECT_EQ(Text(rows->GetValue(99999, 3)), "000000100000");
    EXPECT_EQ(Text(rows->GetValue(99999, 2)), "100000");
    EXPECT_EQ(rows->GetValue(99999, 6).Type(), VarType::Long);  // beyond 16 bits
    EXPECT_EQ(Text(rows->GetValue(0, 9)), "1997-1-2");
}

}  // namespace
}  // namespace kpTables
