// The grid held in memory.
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "Raised.h"
#include "kpTables/MemoryGrid.h"

namespace {

using namespace kpTables;

/// Columns A, B and C with two rows below one header row.
MemoryGrid Sample() {
    MemoryGrid grid;
    grid.AddColumn({"A", "甲", false, 10});
    grid.AddColumn({"B", "乙", true, 20.5});
    grid.AddColumn({"C", "丙", false, 30});
    grid.AddRow({"a1", 1.5, Variant::Null()});
    grid.AddRow({"a2"});
    return grid;
}

std::string Keys(const MemoryGrid& grid) {
    std::string keys;
    for (std::int32_t i = 0; i < grid.Cols(); ++i) keys += grid.ColKey(i).empty() ? "-" : grid.ColKey(i);
    return keys;
}

TEST(MemoryGrid, NewOnesHaveTheirHeaderRowsOnly) {
    for (const std::int32_t fixed : {0, 1, 2}) {
        const MemoryGrid grid(fixed);
        EXPECT_EQ(grid.FixedRows(), fixed);
        EXPECT_EQ(grid.Rows(), fixed);
        EXPECT_EQ(grid.Cols(), 0);
    }
    EXPECT_EQ(MemoryGrid().FixedRows(), 1);
    EXPECT_EQ(Raised([] { MemoryGrid grid(-1); }), 9);
}

TEST(MemoryGrid, CountsHeaderRows) {
    const MemoryGrid grid = Sample();
    EXPECT_EQ(grid.Rows(), 3);
    EXPECT_EQ(grid.FixedRows(), 1);
    EXPECT_EQ(grid.Cols(), 3);
}

TEST(MemoryGrid, ColumnsKeepWhatTheyAreGiven) {
    MemoryGrid grid = Sample();
    EXPECT_EQ(grid.ColKey(1), "B");
    EXPECT_EQ(grid.TextMatrix(0, 1), "乙");
    EXPECT_TRUE(grid.ColHidden(1));
    EXPECT_EQ(grid.ColWidth(1), 20.5);
    grid.SetColKey(1, "Z");
    grid.SetColHidden(1, false);
    grid.SetColWidth(1, -1);
    grid.SetTextMatrix(0, 1, "新");
    const MemoryGrid::Column column = grid.ColumnAt(1);
    EXPECT_EQ(column.key, "Z");
    EXPECT_EQ(column.title, "新");
    EXPECT_FALSE(column.hidden);
    EXPECT_EQ(column.width, -1);
    EXPECT_EQ(grid.TextMatrix(1, 1), "1.5") << "the cells below stay";
}

TEST(MemoryGrid, ATitleStandsInTheFirstHeaderRow) {
    MemoryGrid two(2);
    two.AddColumn({"A", "甲", false, 0});
    EXPECT_EQ(two.TextMatrix(0, 0), "甲");
    EXPECT_EQ(two.TextMatrix(1, 0), "");

    MemoryGrid none(0);
    none.AddColumn({"A", "甲", false, 0});
    none.AddRow({"a1"});
    EXPECT_EQ(none.TextMatrix(0, 0), "a1");
    EXPECT_EQ(none.ColumnAt(0).title, "");
}

TEST(MemoryGrid, CellsAsTextAndNumber) {
    struct Case {
        Variant cell;
        std::string text;
        double number;
    };
    const Case cases[] = {
        {Variant(), "", 0},
        {Variant::Null(), "", 0},
        {"", "", 0},
        {"x", "x", 0},
        {" 1,234.5 ", " 1,234.5 ", 1234.5},
        {12, "12", 12},
        {0.1, "0.1", 0.1},
        {Currency::FromScaled(-25000), "-2.5", -2.5},
        {true, "True", -1},
        {*Date::ParseIso("2004-03-07"), "2004-3-7", 0},
    };
    for (const Case& each : cases) {
        MemoryGrid grid;
        grid.AddColumn({"A", "", false, 0});
        grid.AddRow({each.cell});
        EXPECT_EQ(grid.TextMatrix(1, 0), each.text);
        EXPECT_EQ(grid.ValueMatrix(1, 0), each.number) << each.text;
    }
}

TEST(MemoryGrid, AShortRowEndsInEmptyCells) {
    const MemoryGrid grid = Sample();
    EXPECT_TRUE(grid.Cell(1, 2).IsNull());
    EXPECT_TRUE(grid.Cell(2, 0).Is("a2"));
    EXPECT_TRUE(grid.Cell(2, 1).IsEmpty());
    EXPECT_TRUE(grid.Cell(2, 2).IsEmpty());
}

TEST(MemoryGrid, FindsAColumnByItsKey) {
    MemoryGrid grid = Sample();
    EXPECT_EQ(grid.ColIndex("A"), 0);
    EXPECT_EQ(grid.ColIndex("C"), 2);
    EXPECT_LT(grid.ColIndex("D"), 0);
    grid.SetColKey(0, "");
    EXPECT_LT(grid.ColIndex("A"), 0);
    EXPECT_LT(grid.ColIndex(""), 0) << "a column without a key is not found";
    grid.SetColKey(1, "C");
    EXPECT_EQ(grid.ColIndex("C"), 1) << "the first of two";
}

TEST(MemoryGrid, MovesAColumnAndClosesUp) {
    struct Case {
        std::int32_t column;
        std::int32_t position;
        const char* keys;
    };
    const Case cases[] = {{0, 0, "ABC"}, {0, 1, "BAC"}, {0, 2, "BCA"}, {2, 0, "CAB"}, {2, 1, "ACB"}, {1, 1, "ABC"}};
    for (const Case& each : cases) {
        MemoryGrid grid = Sample();
        grid.SetColPosition(each.column, each.position);
        EXPECT_EQ(Keys(grid), each.keys);
    }
    MemoryGrid grid = Sample();
    grid.SetColPosition(1, 0);
    EXPECT_EQ(grid.TextMatrix(0, 0), "乙");
    EXPECT_EQ(grid.TextMatrix(1, 0), "1.5");
    EXPECT_TRUE(grid.ColHidden(0));
    EXPECT_EQ(grid.ColWidth(0), 20.5);
}

TEST(MemoryGrid, AddsAndTakesColumnsAtTheEnd) {
    MemoryGrid grid = Sample();
    grid.SetCols(5);
    EXPECT_EQ(Keys(grid), "ABC--");
    EXPECT_EQ(grid.TextMatrix(2, 4), "");
    EXPECT_FALSE(grid.ColHidden(4));
    EXPECT_EQ(grid.ColWidth(4), 0);
    grid.SetCols(1);
    EXPECT_EQ(Keys(grid), "A");
    EXPECT_EQ(grid.TextMatrix(1, 0), "a1");
    grid.SetCols(0);
    EXPECT_EQ(grid.Rows(), 3);
}

TEST(MemoryGrid, WhatIsNotThereIsError9) {
    MemoryGrid grid = Sample();
    const auto beyond = std::numeric_limits<std::int32_t>::max();
    const std::function<void()> calls[] = {
        [&] { grid.ColKey(3); },
        [&] { grid.ColKey(-1); },
        [&] { grid.SetColKey(3, "D"); },
        [&] { grid.ColHidden(beyond); },
        [&] { grid.SetColHidden(3, true); },
        [&] { grid.ColWidth(3); },
        [&] { grid.SetColWidth(-1, 5); },
        [&] { grid.ColumnAt(3); },
        [&] { grid.SetColPosition(0, 3); },
        [&] { grid.SetColPosition(0, -1); },
        [&] { grid.SetColPosition(3, 0); },
        [&] { grid.TextMatrix(3, 0); },
        [&] { grid.TextMatrix(-1, 0); },
        [&] { grid.TextMatrix(0, 3); },
        [&] { grid.SetTextMatrix(3, 0, "x"); },
        [&] { grid.ValueMatrix(0, -1); },
        [&] { grid.Cell(3, 0); },
        [&] { grid.SetCols(-1); },
        [&] {
            grid.AddRow({1, 2, 3, 4});
        },
    };
    for (std::size_t i = 0; i < std::size(calls); ++i) EXPECT_EQ(Raised(calls[i]), 9) << i;
    EXPECT_EQ(Keys(grid), "ABC");
    EXPECT_EQ(grid.Rows(), 3);
}

}  // namespace
