// Saved report settings.
#include <gtest/gtest.h>

#include "BookScript.h"
#include "HandsOut.h"
#include "TableScript.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(HistoryList, HandsOutItsRowsUnread) {
    BookScript book;
    const auto rows = Reports({{1, "甲"}, {2, "乙"}});
    book.cnn->Answer(rows);
    EXPECT_EQ(book.tables.rsHistory(), rows);
    EXPECT_EQ(rows->AbsolutePosition(), 1);
}

TEST(HistorySetting, Values) {
    struct Case {
        const char* name;
        Rows rows;
        std::optional<std::int32_t> count;
        const char* setting;
    };
    const Case cases[] = {
        {"as stored", {{5, "月报", "a=1;b=2"}}, std::nullopt, "a=1;b=2"},
        {"Null", {{5, "月报", Variant::Null()}}, std::nullopt, ""},
        {"blanks at both ends", {{5, "月报", "  a b "}}, std::nullopt, "a b"},
        {"no row", {}, std::nullopt, ""},
        {"the first of two", {{5, "甲", "x"}, {5, "乙", "y"}}, std::nullopt, "x"},
        {"a count of 1", {{5, "甲", "x"}}, 1, "x"},
        {"a count of 0", {{5, "甲", "x"}}, 0, ""},
        {"a count that is not known", {{5, "甲", "x"}}, -1, ""},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        BookScript book;
        const auto rows = Reports(each.rows);
        if (each.count) rows->ReportCount(*each.count);
        book.cnn->Answer(rows);
        EXPECT_EQ(book.tables.GetHistorySetting(5), each.setting);
        EXPECT_EQ(book.cnn->Statements(), corpus::Expected("GetHistorySetting(5)"));
    }
}

TEST(HistoryUpdate, AddsAnEntryForIdZero) {
    BookScript book;
    const auto rows = Reports({{1, "旧", "x"}});
    book.AnswerRecorded(rows);
    std::int32_t id = 0;
    std::string caption = "月报", setting = "a=1;b='2'";
    Date date = Day("2004-03-07");
    EXPECT_EQ(book.tables.History_Update(id, caption, setting, date), -1);
    EXPECT_EQ(id, 7);
    const Journal expected = {"open table History",
                              "AddNew",
                              "Set Caption=月报",
                              "Set setting=a=1;b='2'",
                              "Set rptDate=2004-3-7",
                              "Update",
                              "Close"};
    EXPECT_EQ(*book.cnn->Log(), expected);
    EXPECT_EQ(rows->RecordCount(), 2);
    EXPECT_EQ(caption, "月报");
    EXPECT_EQ(setting, "a=1;b='2'");
    EXPECT_EQ(date, Day("2004-03-07"));
}

TEST(HistoryUpdate, ChangesTheEntryOfAnyOtherId) {
    for (const std::int32_t given : {5, -5}) {
        BookScript book;
        const auto rows = Reports({{given, "旧", "x", Day("2003-01-01")}});
        book.AnswerRecorded(rows);
        std::int32_t id = given;
        EXPECT_EQ(book.tables.History_Update(id, std::string("新"), std::string(), Day("2004-03-07")), -1);
        EXPECT_EQ(id, given);
        const Journal expected = {"open Select * From History Where rpID=" + Text(given),
                                  "Set Caption=新",
                                  "Set setting=",
                                  "Set rptDate=2004-3-7",
                                  "Update",
                                  "Close"};
        EXPECT_EQ(*book.cnn->Log(), expected);
        EXPECT_EQ(rows->RecordCount(), 1);
    }
}

TEST(HistoryUpdate, AnIdThatIsNotThereFails) {
    BookScript book;
    const auto rows = Reports();
    book.AnswerRecorded(rows);
    std::int32_t id = 5;
    EXPECT_EQ(book.tables.History_Update(id, std::string("新"), std::string("x"), Day("2004-03-07")), 0);
    EXPECT_EQ(id, 5);
    EXPECT_EQ(rows->RecordCount(), 0);
}

TEST(HistoryFailures, AreTrappedOrRaised) {
    BookScript trapped;
    trapped.cnn->FailAt(1).FailAt(2).FailAt(3);
    EXPECT_FALSE(trapped.tables.History_Del(5));
    for (const std::int32_t given : {0, 5}) {
        std::int32_t id = given;
        EXPECT_EQ(trapped.tables.History_Update(id, std::string("新"), std::string("x"), Day("2004-03-07")), 0);
        EXPECT_EQ(id, given);
    }
    EXPECT_EQ(trapped.cnn->Statements().size(), 3u);

    BookScript raised;
    raised.cnn->FailAt(1).FailAt(2);
    EXPECT_EQ(FailureOf([&] { raised.tables.rsHistory(); }), kRefused);
    EXPECT_EQ(FailureOf([&] { raised.tables.GetHistorySetting(5); }), kRefused);
    CTables unconnected;
    EXPECT_EQ(FailureOf([&] { unconnected.rsHistory(); }), 91);
    EXPECT_EQ(FailureOf([&] { unconnected.GetHistorySetting(5); }), 91);
    EXPECT_FALSE(unconnected.History_Del(5));
}

}  // namespace
}  // namespace kpTables::test
