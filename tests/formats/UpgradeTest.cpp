// Books of every earlier format, upgraded.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "BookSchema.h"
#include "OldBook.h"
#include "corpus/Corpus.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using namespace test;
namespace fs = std::filesystem;

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// What the books' makers added to them.
const Schema kHostsOwn = {
    {"我的表", R"(CREATE TABLE "我的表" ("id" INTEGER PRIMARY KEY AUTOINCREMENT, "说明" TEXT(30) COLLATE KPTEXT))"},
    {"我的表.说明", R"(CREATE INDEX "我的表.说明" ON "我的表" ("说明"))"},
    {"商品设置.颜色", R"(CREATE INDEX "商品设置.颜色" ON "商品设置" ("颜色"))"}};

/// The schema of a new book with what the hosts of the old ones have added.
Schema Wanted(HeaderDialect header) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("new");
    CreateBook(path, {.header = header});
    Schema schema = SchemaOf(path);
    schema.insert(kHostsOwn.begin(), kHostsOwn.end());
    std::string& products = schema.at("商品设置");
    products.insert(products.size() - 1, R"(, "颜色" TEXT(10) COLLATE KPTEXT)");
    return schema;
}

class OldBook : public testing::TestWithParam<std::string> {
protected:
    OldBook() { UnpackBook(GetParam(), path_); }

    HeaderDialect Dialect() const {
        return GetParam().ends_with("-sql") ? HeaderDialect::SqlServer : HeaderDialect::Jet;
    }
    std::int64_t Format() const { return OpenRaw(path_).IntegerOf("PRAGMA user_version"); }
    bool IsOld() const { return Format() < schema::kFormat; }

    const TemporaryDirectory directory_;
    const std::string path_ = directory_.File("book");
};

TEST_P(OldBook, BecomesLikeANewOneAndKeepsItsRows) {
    const Columns columns = ColumnsOf(path_);
    const auto rows = RowsOf(path_, columns);
    for (const auto& [table, text] : rows) EXPECT_FALSE(text.empty()) << table;
    const auto format = Format();
    const BookUpgrade done = UpgradeBook(path_);
    EXPECT_EQ(done.fromFormat, format);
    EXPECT_EQ(done.toFormat, schema::kFormat);
    EXPECT_EQ(done.changes.empty(), format == schema::kFormat);
    EXPECT_EQ(Format(), schema::kFormat);
    EXPECT_EQ(SchemaOf(path_), Wanted(Dialect()));
    EXPECT_EQ(RowsOf(path_, columns), rows);

    const auto book = OpenBook(path_);
    EXPECT_EQ(book->MissingParts(), std::vector<std::string>());
    const auto made = CreateBook("memory:", {.header = Dialect()})->Tables();
    auto tables = book->Tables();
    ASSERT_EQ(tables.size(), made.size() + 1);
    EXPECT_EQ(tables.back().name, "我的表");
    for (std::size_t i = 0; i < made.size(); ++i) EXPECT_EQ(tables[i].name, made[i].name);
}

TEST_P(OldBook, FindsItsRowsByTextAndByItsSecondNames) {
    UpgradeBook(path_);
    const auto book = OpenBook(path_);
    EXPECT_EQ(RowsOf(*book, "Select dpID From 仓库设置 Where 仓库名称='阿大的仓库'"), "3");
    EXPECT_EQ(RowsOf(*book, "Select dpID From 仓库设置 Where 仓库名称='张三ab'"), "7");
    EXPECT_EQ(RowsOf(*book, "Select 仓库名称 From 仓库设置 Order by 仓库名称"), "阿大的仓库 / 张三ＡＢ / 中心仓库");
    EXPECT_EQ(RowsOf(*book, "Select BillID,项目ID From 入库目录 Order by BillID"), "1|1 / 5|5 / 42|30000");
    EXPECT_EQ(RowsOf(*book, "Select pdID,颜色 From 商品设置 Where 颜色='红'"), "9|红");
    EXPECT_EQ(RowsOf(*book, "Select 说明 From 我的表"), "自己的");
}

TEST_P(OldBook, DoesNotGiveTheNumberOfADeletedBillAgain) {
    UpgradeBook(path_);
    const auto book = OpenBook(path_);
    book->Execute("Insert Into 出库目录 (年份) Values (2004)");
    EXPECT_EQ(RowsOf(*book, "Select BillID From 出库目录"), "1 / 5 / 43");
}

TEST_P(OldBook, RunsEveryTextOfTheComponentOnceUpgraded) {
    UpgradeBook(path_);
    const auto old = OpenBook(path_);
    const auto made = CreateBook("memory:", {.header = Dialect()});
    const auto outcome = [](Connection& book, const corpus::Statement& statement) -> std::string {
        try {
            if (statement.kind == "execute")
                book.Execute(statement.text);
            else
                (void)book.Open(statement.text, SourceKind::Text)->RecordCount();
            return "runs";
        } catch (const DatabaseError& error) {
            return error.Description();
        }
    };
    // Nothing is kept, so nothing waits for the disk.
    old->BeginTrans();
    int run = 0;
    for (const corpus::SentText& text : corpus::Texts()) {
        // What a text finds may make it fail on the one book and not on the other, but no name may be unknown.
        const std::string oldOutcome = outcome(*old, *text.statement);
        if (outcome(*made, *text.statement) != "runs") continue;
        EXPECT_EQ(oldOutcome.find("unknown"), std::string::npos) << text.statement->text << ": " << oldOutcome;
        ++run;
    }
    old->RollbackTrans();
    EXPECT_GT(run, 100);
}

TEST_P(OldBook, IsCopiedFirst) {
    if (!IsOld()) GTEST_SKIP() << "a book of the present format";
    const Columns columns = ColumnsOf(path_);
    const auto rows = RowsOf(path_, columns);
    const Schema schema = SchemaOf(path_);
    const BookUpgrade done = UpgradeBook(path_);
    EXPECT_EQ(done.copy, path_ + ".before-upgrade");
    EXPECT_EQ(SchemaOf(done.copy), schema);
    EXPECT_EQ(RowsOf(done.copy, columns), rows);
    EXPECT_EQ(OpenRaw(done.copy).IntegerOf("PRAGMA user_version"), 1);
    fs::remove(path_);
    UnpackBook(GetParam(), path_);
    EXPECT_EQ(UpgradeBook(path_).copy, path_ + ".before-upgrade-2");
}

TEST_P(OldBook, IsLeftAloneTheSecondTime) {
    UpgradeBook(path_, {.copyFirst = false});
    EXPECT_FALSE(fs::exists(path_ + ".before-upgrade"));
    const std::string bytes = ReadFile(path_);
    const BookUpgrade second = UpgradeBook(path_);
    EXPECT_TRUE(second.changes.empty());
    EXPECT_EQ(second.copy, "");
    EXPECT_EQ(ReadFile(path_), bytes);
}

TEST_P(OldBook, StaysAsItIsWhenItCannotBeUpgraded) {
    {
        // Without its key the table has taken a setting twice.
        const auto raw = OpenRaw(path_);
        for (const char* text : {"DROP TABLE 系统选项", "CREATE TABLE 系统选项 (Item TEXT, Discription TEXT)",
                                 "INSERT INTO 系统选项 VALUES ('a', '1'), ('a', '2')"}) {
            raw.Run(text);
        }
    }
    const Columns columns = ColumnsOf(path_);
    const auto rows = RowsOf(path_, columns);
    const Schema schema = SchemaOf(path_);
    const auto format = Format();
    const auto error = Refused([&] { UpgradeBook(path_, {.copyFirst = false}); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("The book '" + path_ + "' cannot be upgraded: "), std::string::npos);
    EXPECT_NE(error->Description().find("nothing was changed"), std::string::npos) << error->what();
    EXPECT_EQ(SchemaOf(path_), schema);
    EXPECT_EQ(RowsOf(path_, columns), rows);
    EXPECT_EQ(Format(), format);
}

TEST_P(OldBook, KeepsTheViewsAndTriggersOfItsHost) {
    const Schema own = {{"看", "CREATE VIEW 看 AS SELECT 商品名称 FROM 商品设置 WHERE pdID = 9"},
                        {"记",
                         "CREATE TRIGGER 记 AFTER INSERT ON 商品设置 BEGIN INSERT INTO 我的表 (说明) "
                         "VALUES (new.商品名称); END"}};
    for (const auto& [name, text] : own) OpenRaw(path_).Run(text);
    UpgradeBook(path_);
    const Schema schema = SchemaOf(path_);
    for (const auto& [name, text] : own) EXPECT_EQ(schema.at(name), text);
    const auto book = OpenBook(path_);
    book->Execute("Insert Into 商品设置 (商品名称) Values ('铁钉')");
    EXPECT_EQ(RowsOf(*book, "Select 说明 From 我的表 Order by id"), "自己的 / 铁钉");
}

INSTANTIATE_TEST_SUITE_P(Books, OldBook, testing::ValuesIn(OldBooks()), [](const auto& each) {
    std::string name = "format_" + each.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(Upgrade, RefusesWhatIsNoBookInAFile) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(Refused([&] { UpgradeBook(directory.File("missing")); }));
    EXPECT_TRUE(Refused([&] { UpgradeBook(directory.Path().string()); }));
    EXPECT_TRUE(Refused([] { UpgradeBook("memory:"); }));
}

TEST(Upgrade, WaitsForAnotherProgramAndGivesUp) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    UnpackBook(OldBooks().front(), path);
    const auto other = OpenRaw(path);
    other.Run("BEGIN IMMEDIATE");
    const auto error = Refused([&] { UpgradeBook(path, {.busyTimeout = std::chrono::milliseconds(1)}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Locked)) << error->what();
    other.Run("ROLLBACK");
    EXPECT_FALSE(UpgradeBook(path).changes.empty());
}

}  // namespace
}  // namespace kpTables
