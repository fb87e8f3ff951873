// Column layouts of grids: saved from one, applied to another.
#include <gtest/gtest.h>

#include "BookScript.h"
#include "HandsOut.h"
#include "TableScript.h"
#include "kpTables/MemoryGrid.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

using Columns = std::vector<MemoryGrid::Column>;

std::shared_ptr<MemoryGrid> GridOf(const Columns& columns, std::int32_t fixedRows = 1) {
    auto grid = std::make_shared<MemoryGrid>(fixedRows);
    for (const auto& each : columns) grid->AddColumn(each);
    return grid;
}

/// Each column as "key|title|hidden|width".
std::vector<std::string> Shape(const MemoryGrid& grid) {
    std::vector<std::string> shape;
    for (std::int32_t i = 0; i < grid.Cols(); ++i) {
        const auto column = grid.ColumnAt(i);
        shape.push_back(column.key + "|" + column.title + "|" + Text(column.hidden) + "|" + Text(column.width));
    }
    return shape;
}

const Columns kThree = {{"A", "a", false, 10}, {"B", "b", true, 20}, {"C", "c", false, 30}};

TEST(HeaderFlag, ComesBackAsDefault) {
    for (const bool saving : {false, true}) {
        BookScript book;
        std::string table = "L", flag, given = "F";
        EXPECT_FALSE(book.tables.Header(GridPtr(GridOf({})), table, flag, saving));
        EXPECT_EQ(flag, "Default");
        EXPECT_EQ(table, "L");
        EXPECT_FALSE(book.tables.Header(GridPtr(GridOf({})), table, given, saving));
        EXPECT_EQ(given, "F");
    }
}

struct ApplyCase {
    const char* name;
    Rows rows;  ///< table, position, flag, key, title, hidden, width
    std::vector<std::string> shape;
};

TEST(ApplyLayout, ToThreeColumns) {
    const std::string a = "A|a|False|10", b = "B|b|True|20", c = "C|c|False|30", added = "||False|0";
    const Variant null = Variant::Null();
    const ApplyCase cases[] = {
        {"no rows", {}, {a, b, c}},
        {"width 0 retitles and hides only", {{"L", 2, "F", "A", "甲", true, 0}}, {"A|甲|True|10", b, c}},
        {"width 0 shows again", {{"L", 0, "F", "B", "乙", false, 0}}, {a, "B|乙|False|20", c}},
        {"width 0, a key that is not there", {{"L", 0, "F", "D", "丁", false, 0}}, {a, b, c}},
        {"a width that is no number counts as 0", {{"L", 2, "F", "A", "甲", true, null}}, {"A|甲|True|10", b, c}},
        {"a width at the column's own place", {{"L", 0, "F", "A", "甲", true, 15}}, {"A|甲|True|15", b, c}},
        {"moved to the right", {{"L", 2, "F", "A", "甲", false, 15}}, {b, c, "A|甲|False|15"}},
        {"moved to the left", {{"L", 0, "F", "C", "丙", false, 0.5}}, {"C|丙|False|0.5", a, b}},
        {"moved one beyond the end", {{"L", 3, "F", "A", "甲", false, 15}}, {b, c, added, "A|甲|False|15"}},
        {"moved far beyond the end",
         {{"L", 5, "F", "A", "甲", false, 15}},
         {b, c, added, added, added, "A|甲|False|15"}},
        {"a key that is not there is added at the end, not moved",
         {{"L", 0, "F", "D", "丁", true, 40}},
         {a, b, c, "D|丁|True|40"}},
        {"a width below 0 moves and retitles, the width stays",
         {{"L", 1, "F", "A", "甲", true, -1}},
         {b, "A|甲|True|10", c}},
        {"a width below 0, a key that is not there", {{"L", 0, "F", "D", "丁", true, -1}}, {a, b, c, "D|丁|True|0"}},
        {"no title", {{"L", 0, "F", "A", null, false, 0}}, {"A||False|10", b, c}},
        {"no key finds no column", {{"L", 0, "F", null, "无", false, 5}}, {a, b, c, "|无|False|5"}},
        {"no key, width 0", {{"L", 0, "F", null, "无", false, 0}}, {a, b, c}},
        {"row by row, in the order of the rows",
         {{"L", 0, "F", "C", "丙", false, 3}, {"L", 0, "F", "B", "乙", false, 2}},
         {"B|乙|False|2", "C|丙|False|3", a}},
        {"an added column is moved by a later row",
         {{"L", 0, "F", "D", "丁", false, 4}, {"L", 0, "F", "D", "戊", false, 5}},
         {"D|戊|False|5", a, b, c}},
    };
    for (const ApplyCase& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(std::string(each.name) + (isSQL ? " (SQL Server)" : " (Jet)"));
            BookScript book;
            book.AnswerRecorded(Layout(isSQL, each.rows));
            const auto grid = GridOf(kThree);
            EXPECT_FALSE(book.tables.Header(GridPtr(grid), std::string("L"), std::string("F"), false, isSQL));
            EXPECT_EQ(Shape(*grid), each.shape);
            EXPECT_EQ(book.cnn->Log()->size(), 2u) << "it opens and closes";
        }
    }
}

TEST(ApplyLayout, ToAGridWithoutColumns) {
    BookScript book;
    book.cnn->Answer(Layout(false, {{"L", 1, "F", "B", "乙", true, 20}, {"L", 0, "F", "A", "甲", false, 10}}));
    const auto grid = GridOf({});
    EXPECT_FALSE(book.tables.Header(GridPtr(grid), std::string("L"), std::string("F")));
    const std::vector<std::string> expected = {"B|乙|True|20", "A|甲|False|10"};
    EXPECT_EQ(Shape(*grid), expected);
}

TEST(ApplyLayout, TitlesTheFirstOfTwoHeaderRows) {
    BookScript book;
    book.cnn->Answer(Layout(false, {{"L", 0, "F", "A", "甲", false, 15}}));
    const auto grid = GridOf(kThree, 2);
    grid->SetTextMatrix(1, 0, "second");
    EXPECT_FALSE(book.tables.Header(GridPtr(grid), std::string("L"), std::string("F")));
    EXPECT_EQ(grid->TextMatrix(0, 0), "甲");
    EXPECT_EQ(grid->TextMatrix(1, 0), "second");
}

TEST(ApplyLayout, WithoutHeaderRowsTitlesTheFirstRow) {
    BookScript book;
    book.cnn->Answer(Layout(false, {{"L", 0, "F", "A", "甲", false, 0}}));
    const auto grid = GridOf(kThree, 0);
    grid->AddRow({"1", "2", "3"});
    EXPECT_FALSE(book.tables.Header(GridPtr(grid), std::string("L"), std::string("F")));
    EXPECT_EQ(grid->TextMatrix(0, 0), "甲");

    BookScript noRow;
    noRow.cnn->Answer(Layout(false, {{"L", 0, "F", "A", "甲", false, 0}}));
    EXPECT_EQ(FailureOf([&] { noRow.tables.Header(GridPtr(GridOf(kThree, 0)), std::string("L")); }), 9);
}

TEST(SaveLayout, DeletesBeforeItSavesTheKeyedColumns) {
    for (const bool isSQL : {false, true}) {
        BookScript book;
        book.cnn->Answer(nullptr);
        const auto rows = Layout(isSQL);
        book.AnswerRecorded(rows);
        const auto grid = GridOf({{"A", "甲", false, 10}, {"", "无", true, 5}, {"C", "", true, -1.5}});
        EXPECT_FALSE(book.tables.Header(GridPtr(grid), std::string("L"), std::string("F"), true, isSQL));
        const std::string table = isSQL ? "TableName" : "Table", position = isSQL ? "ColIndex" : "Index";
        const Journal expected = {
            "execute Delete From Header Where " + table + "='L' And Flag='F'",
            "open table Header",
            "AddNew",
            "Set " + table + "=L",
            "Set " + position + "=0",
            "Set Flag=F",
            "Set colkey=A",
            "Set Header=甲",
            "Set Hidden=False",
            "Set Width=10",
            "Update",
            "AddNew",
            "Set " + table + "=L",
            "Set " + position + "=2",
            "Set Flag=F",
            "Set colkey=C",
            "Set Header=",
            "Set Hidden=True",
            "Set Width=-1.5",
            "Update",
            "Close",
        };
        EXPECT_EQ(*book.cnn->Log(), expected);
    }
}

TEST(SaveLayout, WithoutKeysOnlyDeletes) {
    for (const Columns& columns : {Columns{}, Columns{{"", "甲", false, 10}, {"", "乙", false, 20}}}) {
        BookScript book;
        book.cnn->Answer(nullptr);
        book.AnswerRecorded(Layout(false));
        EXPECT_FALSE(book.tables.Header(GridPtr(GridOf(columns)), std::string("L"), std::string("F"), true));
        const Journal expected = {"execute Delete From Header Where Table='L' And Flag='F'", "open table Header",
                                  "Close"};
        EXPECT_EQ(*book.cnn->Log(), expected);
    }
}

TEST(SaveLayout, LeavesTheGridAlone) {
    BookScript book;
    book.cnn->Answer(nullptr).Answer(Layout(false));
    const auto grid = GridOf(kThree, 2);
    EXPECT_FALSE(book.tables.Header(GridPtr(grid), std::string("L"), std::string("F"), true));
    EXPECT_EQ(Shape(*grid), Shape(*GridOf(kThree)));
}

/// A control that has no such member as ColHidden.
class PoorGrid : public MemoryGrid {
public:
    using MemoryGrid::MemoryGrid;
    bool ColHidden(std::int32_t) const override { Raise(ErrorNumber::UnknownMember, "ColHidden"); }
    void SetColHidden(std::int32_t, bool) override { Raise(ErrorNumber::UnknownMember, "ColHidden"); }
};

TEST(HeaderFailures, AGridThatLacksAMemberIsTheHosts) {
    const auto grid = std::make_shared<PoorGrid>();
    grid->AddColumn({"A", "a", false, 10});
    BookScript saving;
    saving.cnn->Answer(nullptr);
    saving.AnswerRecorded(Layout(false));
    EXPECT_EQ(FailureOf([&] { saving.tables.Header(GridPtr(grid), std::string("L"), std::string("F"), true); }), 438);
    const Journal saved = {"execute Delete From Header Where Table='L' And Flag='F'",
                           "open table Header",
                           "AddNew",
                           "Set Table=L",
                           "Set Index=0",
                           "Set Flag=F",
                           "Set colkey=A",
                           "Set Header=a"};
    EXPECT_EQ(*saving.cnn->Log(), saved) << "the deletion stays done";

    BookScript applying;
    applying.cnn->Answer(Layout(false, {{"L", 0, "F", "A", "甲", true, 15}}));
    EXPECT_EQ(FailureOf([&] { applying.tables.Header(GridPtr(grid), std::string("L"), std::string("F")); }), 438);
    EXPECT_EQ(grid->TextMatrix(0, 0), "甲") << "the title came before";
    EXPECT_EQ(grid->ColWidth(0), 10);
}

TEST(HeaderFailures, NoGridNoConnection) {
    BookScript saving;
    saving.cnn->Answer(nullptr).Answer(Layout(false));
    EXPECT_EQ(FailureOf([&] { saving.tables.Header(GridPtr(), std::string("L"), std::string("F"), true); }), 91);
    EXPECT_EQ(saving.cnn->Statements().at(0), Executed("Delete From Header Where Table='L' And Flag='F'"));

    BookScript applying;
    applying.cnn->Answer(Layout(false, {{"L", 0, "F", "A", "甲", true, 15}}));
    EXPECT_EQ(FailureOf([&] { applying.tables.Header(GridPtr(), std::string("L")); }), 91);

    CTables unconnected;
    for (const bool saves : {false, true})
        EXPECT_EQ(
            FailureOf([&] { unconnected.Header(GridPtr(GridOf(kThree)), std::string("L"), std::string("F"), saves); }),
            91);
}

TEST(HeaderFailures, ARowThatCannotBeApplied) {
    struct Case {
        const char* name;
        Rows rows;
        std::int32_t error;
    };
    const Case cases[] = {
        {"a position below 0", {{"L", -1, "F", "A", "甲", false, 15}}, 9},
        {"hidden is Null", {{"L", 0, "F", "A", "甲", Variant::Null(), 15}}, 94},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        BookScript book;
        book.cnn->Answer(Layout(false, each.rows));
        EXPECT_EQ(FailureOf([&] { book.tables.Header(GridPtr(GridOf(kThree)), std::string("L")); }), each.error);
    }
}

}  // namespace
}  // namespace kpTables::test
