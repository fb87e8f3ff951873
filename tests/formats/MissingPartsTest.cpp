// Books of which a table or a column was dropped.
#include <gtest/gtest.h>

#include "OldBook.h"
#include "engines/sqlite/SchemaNote.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using namespace test;
using Names = std::vector<std::string>;

class IncompleteBook : public testing::Test {
protected:
    IncompleteBook() { CreateBook(path_); }

    void Run(const char* text) const { OpenRaw(path_).Run(text); }
    Names Missing(bool readOnly = false) const { return OpenBook(path_, {.readOnly = readOnly})->MissingParts(); }
    bool IsNoted() const {
        const auto raw = OpenRaw(path_);
        return engines::sqlite::ReadSchemaNote(raw) == engines::sqlite::SchemaVersion(raw);
    }

    const TemporaryDirectory directory_;
    const std::string path_ = directory_.File("book");
};

TEST_F(IncompleteBook, ANewOneLacksNothing) {
    EXPECT_TRUE(IsNoted());
    EXPECT_EQ(Missing(), Names());
    EXPECT_EQ(CreateBook("memory:")->MissingParts(), Names());
    EXPECT_EQ(CreateBook("memory:", {.header = HeaderDialect::SqlServer})->MissingParts(), Names());
}

TEST_F(IncompleteBook, NamesEveryTableAndColumnEachTime) {
    Run("ALTER TABLE 仓库设置 DROP COLUMN 结帐标志");
    Run("DROP TABLE 工资表");
    for (int opened = 0; opened < 2; ++opened) {
        for (const bool readOnly : {false, true}) {
            EXPECT_EQ(Missing(readOnly), (Names{"the column 仓库设置.结帐标志", "the table 工资表"}));
        }
        EXPECT_FALSE(IsNoted());
    }
}

TEST_F(IncompleteBook, SaysSoWhileItIsOpen) {
    const auto book = OpenBook(path_);
    EXPECT_EQ(book->MissingParts(), Names());
    book->Execute("Drop Table History");
    EXPECT_EQ(book->MissingParts(), Names{"the table History"});
}

TEST_F(IncompleteBook, IsComparedOnlyAfterAChangeOfItsSchema) {
    Run("CREATE TABLE t (a)");
    EXPECT_FALSE(IsNoted());
    EXPECT_EQ(Missing(true), Names());
    EXPECT_FALSE(IsNoted()) << "a book open for reading only was changed";
    EXPECT_EQ(Missing(), Names());
    EXPECT_TRUE(IsNoted());
}

TEST_F(IncompleteBook, IsComparedThoughTheNoteCannotBeWritten) {
    Run("CREATE TABLE t (a)");
    const auto writer = OpenRaw(path_);
    writer.Run("BEGIN IMMEDIATE");
    EXPECT_EQ(Missing(), Names());
    writer.Run("ROLLBACK");
    Run("DROP TABLE kp_schema");
    EXPECT_EQ(Missing(), Names());
}

TEST_F(IncompleteBook, IsMadeWholeByTheUpgrade) {
    OpenBook(path_)->Execute("Insert Into 仓库设置 (仓库名称,结帐标志) Values ('东库',True)");
    const Schema whole = SchemaOf(path_);
    Run("ALTER TABLE 仓库设置 DROP COLUMN 结帐标志");
    Run("ALTER TABLE 入库目录 DROP COLUMN 项目ID");
    Run("DROP INDEX [入库目录.日期]");
    Run("DROP TABLE 工资表");
    Run("DROP TABLE kp_schema");
    const BookUpgrade done = UpgradeBook(path_);
    EXPECT_EQ(done.fromFormat, done.toFormat);
    EXPECT_EQ(done.changes, (Names{"added the column 仓库设置.结帐标志", "added the column 入库目录.项目ID",
                                   "made the index 入库目录.日期", "made the table 工资表"}));
    EXPECT_EQ(SchemaOf(path_), whole);
    EXPECT_TRUE(IsNoted());
    EXPECT_EQ(Missing(), Names());
    EXPECT_EQ(RowsOf(*OpenBook(path_), "Select 仓库名称,结帐标志 From 仓库设置"), "东库|False");
}

}  // namespace
}  // namespace kpTables
