// The order of texts in SQLite and in recordsets, and its version in a book.
#include "engines/sqlite/Collation.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <random>
#include <string>
#include <vector>

#include "TestBook.h"
#include "engines/common/BookTexts.h"
#include "engines/sqlite/Database.h"
#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"
#include "text/TextOrder.h"

namespace kpTables::engines::sqlite {
namespace {

TEST(Collation, EqualTextsHaveOneKey) {
    std::mt19937 random(20040309);
    const std::vector<std::string> characters = {"a", "A", "Ａ", "1", "１", "①", " ", "\x01", "水", "é"};
    const auto text = [&] {
        std::string out;
        for (auto left = random() % 4; left > 0; --left) out += characters[random() % characters.size()];
        return out;
    };
    int equal = 0;
    for (int i = 0; i < 200000; ++i) {
        const std::string left = text();
        const std::string right = text();
        const auto key = kBookTexts.key(left);
        const auto other = kBookTexts.key(right);
        ASSERT_TRUE(key && other) << left << '|' << right;
        const bool same = kBookTexts.compare(left, right) == 0;
        ASSERT_EQ(*key == *other, same) << left << '|' << right;
        equal += same;
    }
    EXPECT_GT(equal, 1000);
    EXPECT_EQ(kBookTexts.key("①"), kBookTexts.key("1"));
}

class BookOfAnotherVersion : public testing::Test {
protected:
    BookOfAnotherVersion() {
        const auto book = CreateBook(path_);
        for (const char* name : {"张三", "李四", "阿大"}) {
            book->Execute(std::string("Insert Into 仓库设置 (仓库名称) Values ('").append(name).append("')"));
        }
    }

    /// Runs a statement as the program of another version, which orders texts backward or as this one.
    void RunElsewhere(const char* statement, bool backward = false) const {
        const Database other(path_, SQLITE_OPEN_READWRITE);
        const auto compare = [](void* direction, int leftSize, const void* left, int rightSize, const void* right) {
            const int order =
                text::CompareTexts({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
                                   {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
            return direction ? -order : order;
        };
        int direction = 0;
        ASSERT_EQ(
            sqlite3_create_collation(other.Get(), "KPTEXT", SQLITE_UTF8, backward ? &direction : nullptr, compare),
            SQLITE_OK);
        other.Run(statement);
    }

    void ExpectOrderAndVersion() const {
        const auto book = OpenBook(path_);
        EXPECT_EQ(test::RowsOf(*book, "Select 仓库名称 From 仓库设置 Order By 仓库名称"), "阿大 / 李四 / 张三");
        EXPECT_EQ(test::ValueOf(*book, "Select dpID From 仓库设置 Where 仓库名称='张三'"), "1");
        const Database check(path_, SQLITE_OPEN_READONLY);
        EXPECT_EQ(check.IntegerOf("SELECT COUNT(*) FROM kp_collation"), 1);
        EXPECT_EQ(check.IntegerOf("SELECT COUNT(*) FROM kp_collation WHERE version = '1'"), 1);
        for (const TableInfo& table : book->Tables()) EXPECT_NE(table.name, "kp_collation");
    }

    BookPtr OpenForReading() const { return OpenBook(path_, {.readOnly = true}); }

private:
    test::TemporaryDirectory directory_;

protected:
    const std::string path_ = directory_.File("book");
};

TEST_F(BookOfAnotherVersion, GetsItsIndexesAnew) {
    RunElsewhere("REINDEX KPTEXT", true);
    RunElsewhere("UPDATE kp_collation SET version = '72.1'");
    ExpectOrderAndVersion();
}

TEST_F(BookOfAnotherVersion, GetsAVersionWhenItHasNone) {
    RunElsewhere("REINDEX KPTEXT", true);
    RunElsewhere("DELETE FROM kp_collation");
    ExpectOrderAndVersion();
    RunElsewhere("REINDEX KPTEXT", true);
    RunElsewhere("DROP TABLE kp_collation");
    ExpectOrderAndVersion();
}

TEST_F(BookOfAnotherVersion, IsReadWhenItsIndexesAreInThisOrder) {
    RunElsewhere("UPDATE kp_collation SET version = '72.1'");
    const auto book = OpenForReading();
    EXPECT_EQ(test::ValueOf(*book, "Select dpID From 仓库设置 Where 仓库名称='张三'"), "1");
    const Database check(path_, SQLITE_OPEN_READONLY);
    EXPECT_EQ(check.IntegerOf("SELECT COUNT(*) FROM kp_collation WHERE version = '72.1'"), 1);
}

TEST_F(BookOfAnotherVersion, IsNotReadWhenAnIndexWouldHideRows) {
    RunElsewhere("REINDEX KPTEXT", true);
    RunElsewhere("UPDATE kp_collation SET version = '72.1'");
    try {
        OpenForReading();
        FAIL() << "the book was opened";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.Description(), "The book '" + path_ +
                                           "' cannot be opened: its indexes have another order of texts; open it for "
                                           "writing once, and they are made anew");
    }
    ExpectOrderAndVersion();
    EXPECT_EQ(test::ValueOf(*OpenForReading(), "Select dpID From 仓库设置 Where 仓库名称='张三'"), "1");
}

}  // namespace
}  // namespace kpTables::engines::sqlite
