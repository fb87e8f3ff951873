// The drivers' pay sheet: made, summed, read and saved from a grid.
#include <gtest/gtest.h>

#include "BookScript.h"
#include "HandsOut.h"
#include "PaySheetScript.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

std::int16_t Short(int value) { return static_cast<std::int16_t>(value); }

TEST(PaySheetList, HandsOutItsRows) {
    ExpectHandsOut("a saved month", [](CTables& t) { return t.rs工资表(Short(3)); });
    ExpectHandsOut("summed", [](CTables& t) { return t.rs工资表(Short(0), Short(6)); });
    ExpectHandsOut("a new sheet", [](CTables& t) { return t.rs工资表(Short(3), Short(0), true); });
}

TEST(PaySheetList, TrapsNothing) {
    for (const int month : {3, 0}) {
        BookScript book;
        book.cnn->FailAt(1).FailAt(2);
        EXPECT_EQ(FailureOf([&] { book.tables.rs工资表(Short(month)); }), kRefused);
        EXPECT_EQ(FailureOf([&] { book.tables.rs工资表(Short(month), Short(0), true); }), kRefused);
    }
    CTables unconnected;
    EXPECT_EQ(FailureOf([&] { unconnected.rs工资表(Short(3)); }), 91);
}

/// The names on the rows written.
std::vector<std::string> Written(int fixedRows, int rows) {
    BookScript book;
    book.cnn->Answer(nullptr);
    const auto sheet = PaySheet();
    book.cnn->Answer(sheet);
    const auto grid = PayGrid(fixedRows);
    for (int i = 1; i <= rows; ++i) AddDriver(*grid, "司机" + std::to_string(i), i);
    EXPECT_TRUE(book.tables.Update工资表(Short(2004), Short(3), GridPtr(grid)));
    std::vector<std::string> names;
    for (const auto& row : sheet->Contents()) names.push_back(Text(row[2]));
    return names;
}

TEST(SavePaySheet, RowsByTheNumberOfHeaderRows) {
    using Names = std::vector<std::string>;
    // From FixedRows to Rows - FixedRows - 1.
    EXPECT_EQ(Written(1, 0), Names{}) << "rows 1 to -1";
    EXPECT_EQ(Written(1, 1), Names{}) << "rows 1 to 0: the totals only";
    EXPECT_EQ(Written(1, 3), (Names{"司机1", "司机2"})) << "rows 1 to 2";
    EXPECT_EQ(Written(0, 0), Names{}) << "rows 0 to -1";
    EXPECT_EQ(Written(0, 2), (Names{"司机1", "司机2"})) << "rows 0 to 1";
    EXPECT_EQ(Written(2, 2), Names{}) << "rows 2 to 1";
    EXPECT_EQ(Written(2, 4), (Names{"司机1", "司机2"})) << "rows 2 to 3";
}

TEST(SavePaySheet, DeletesTheMonthAndWritesEveryColumnInOrder) {
    BookScript book;
    book.cnn->Answer(nullptr);
    const auto sheet = PaySheet();
    book.AnswerRecorded(sheet);
    const auto grid = PayGrid();
    AddDriver(*grid, "王五", 100, "扣罚");
    AddDriver(*grid, "", 0, "");
    AddDriver(*grid, "合计", 999);
    EXPECT_TRUE(book.tables.Update工资表(Short(2004), Short(3), GridPtr(grid)));
    const Journal expected = {
        "execute Delete From 工资表 Where 月份=3", "open table 工资表",
        // The first driver: 总收入 is 101, every column after it one more.
        "AddNew", "Set 年份=2004", "Set 月份=3", "Set 姓名=王五", "Set 总收入=101", "Set 油费=102", "Set 外加油费=103",
        "Set 过路费=104", "Set 装卸费=105", "Set 折旧=106", "Set 保险=107", "Set 利润=108", "Set 税金=109",
        "Set 养路费=110", "Set 装卸工资=111", "Set 费用1=112", "Set 费用2=113", "Set 费用3=114", "Set 总费用=115",
        "Set 其它1=116", "Set 其它2=117", "Set 其它3=118", "Set 应付=119", "Set 所得税=120", "Set 电话费=121",
        "Set 扣款1=122", "Set 扣款2=123", "Set 扣款3=124", "Set 实发工资=125", "Set 备注=扣罚 ", "Update", "AddNew",
        "Set 年份=2004", "Set 月份=3", "Set 姓名=", "Set 总收入=1", "Set 油费=2", "Set 外加油费=3", "Set 过路费=4",
        "Set 装卸费=5", "Set 折旧=6", "Set 保险=7", "Set 利润=8", "Set 税金=9", "Set 养路费=10", "Set 装卸工资=11",
        "Set 费用1=12", "Set 费用2=13", "Set 费用3=14", "Set 总费用=15", "Set 其它1=16", "Set 其它2=17", "Set 其它3=18",
        "Set 应付=19", "Set 所得税=20", "Set 电话费=21", "Set 扣款1=22", "Set 扣款2=23", "Set 扣款3=24",
        "Set 实发工资=25", "Set 备注= ", "Update", "Close"};
    EXPECT_EQ(*book.cnn->Log(), expected);
}

TEST(SavePaySheet, ACellThatIsNoNumberCountsAsZero) {
    BookScript book;
    book.cnn->Answer(nullptr);
    const auto sheet = PaySheet();
    book.cnn->Answer(sheet);
    const auto grid = PayGrid();
    AddDriver(*grid, "王五", 0);
    grid->AddRow({});
    const std::pair<const char*, const char*> cells[] = {
        {"总收入", "1,234.56"}, {"油费", "无"}, {"外加油费", ""}, {"过路费", "0.03125"}, {"装卸费", "-2.5"}};
    for (const auto& [key, text] : cells) grid->SetTextMatrix(1, grid->ColIndex(key), text);
    EXPECT_TRUE(book.tables.Update工资表(Short(2004), Short(3), GridPtr(grid)));
    const auto rows = sheet->Contents();
    ASSERT_EQ(rows.size(), 1u);
    const std::vector<Variant> expected = {Money(12345600), Money(0), Money(0), Money(312), Money(-25000)};
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_TRUE(rows[0][i + 3].Is(expected[i])) << cells[i].first;
}

TEST(SavePaySheet, AColumnThatTheGridLacks) {
    struct Case {
        const char* missing;
        const char* last;  ///< entry of the journal
    };
    const Case cases[] = {
        {"姓名", "Set 月份=3"}, {"总收入", "Set 姓名=王五"}, {"实发", "Set 扣款3=24"}, {"备注", "Set 实发工资=25"}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.missing);
        BookScript book;
        book.cnn->Answer(nullptr);
        book.AnswerRecorded(PaySheet());
        const auto grid = PayGrid();
        AddDriver(*grid, "王五", 0);
        AddDriver(*grid, "合计", 0);
        grid->SetColKey(grid->ColIndex(each.missing), "别的");
        EXPECT_EQ(FailureOf([&] { book.tables.Update工资表(Short(2004), Short(3), GridPtr(grid)); }), 9);
        EXPECT_EQ(book.cnn->Log()->front(), "execute Delete From 工资表 Where 月份=3") << "stays done";
        EXPECT_EQ(book.cnn->Log()->back(), each.last);
    }
}

TEST(SavePaySheet, NoGridNoConnection) {
    BookScript book;
    EXPECT_EQ(FailureOf([&] { book.tables.Update工资表(Short(2004), Short(3), GridPtr()); }), 91);
    EXPECT_EQ(book.cnn->Statements().at(0), Executed("Delete From 工资表 Where 月份=3"));
    CTables unconnected;
    EXPECT_EQ(FailureOf([&] { unconnected.Update工资表(Short(2004), Short(3), GridPtr(PayGrid())); }), 91);
}

}  // namespace
}  // namespace kpTables::test
