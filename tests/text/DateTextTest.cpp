#include "text/DateText.h"

#include <gtest/gtest.h>

namespace kpTables::text {
namespace {

TEST(DateText, Reads) {
    struct Case {
        const char* text;
        double serial;
    };
    const Case cases[] = {
        {"2004-3-7", 38053},
        {" 2004/03/07 ", 38053},
        {"2004.3.7", 38053},
        {"2004年3月7日", 38053},
        {"3/7/2004", 38053},
        {"04-3-7", 38053},
        {"2004-3-7 12:00", 38053.5},
        {"2004-3-7 6:00 PM", 38053.75},
        {"6:00:00", 0.25},
        {"12:00 AM", 0},
        {"2004年3月7日18:00", 38053.75},
        {"13/7/2004", 38181},
        {"7/13/2004", 38181},
        {"10-Mar-2004", 38056},
        {"10-mar-04", 38056},
        {"Mar 7, 2004", 38053},
        {"March 7 2004 12:00", 38053.5},
        {"7 Mar 2004", 38053},
        {"2004-Mar-7", 38053},
        {"Mar 2004", 38047},
        {"2004-3", 38047},
        {"2004/3 6:00", 38047.25},
        {"3/2004", 38047},
        {"2004年3月", 38047},
        {"2004-3-7 下午 6:00", 38053.75},
        {"2004-3-7 上午6:00:00", 38053.25},
        {"2004年3月7日上午12:00", 38053},
        {"下午 6:00", 0.75},
        {"10-Mar-00", 36595},
    };
    for (const Case& c : cases) EXPECT_EQ(ParseDate(c.text), c.serial) << c.text;
}

TEST(DateText, ReadsMonthsFirstWhereAsked) {
    EXPECT_EQ(ParseDate("7/3/04", DateOrder::MonthFirst), 38171);
    EXPECT_EQ(ParseDate("7/3/04"), 39145);  // 2007-3-4
    EXPECT_EQ(ParseDate("31/12/04", DateOrder::MonthFirst), 38352);
    EXPECT_EQ(ParseDate("2004-3-7", DateOrder::MonthFirst), 38053);
    EXPECT_EQ(ParseDate("12/31/99", DateOrder::MonthFirst), 36525);
    EXPECT_FALSE(ParseDate("13/13/04", DateOrder::MonthFirst));
}

TEST(DateText, RefusesWhatIsNoDate) {
    for (const char* text : {"",         "2004-",        "2003-2-29",  "2004-3-7x",    "2004-3/7",
                             "24:00",    "38053",        "三月七日",   "2004.3",       "3-7",
                             "2004年3",  "2004-13",      "13/13/2004", "Mar 7",        "Marc 7, 2004",
                             "7 7 2004", "Mar-Mar-2004", "下午 13:00", "上午 6:00 PM", "1.5"}) {
        EXPECT_FALSE(ParseDate(text)) << text;
    }
}

TEST(DateText, ReadsIsoTextsOnly) {
    EXPECT_EQ(ParseIsoDate("2004-03-07"), 38053);
    EXPECT_EQ(ParseIsoDate("2004-03-07T12:00"), 38053.5);
    EXPECT_EQ(ParseIsoDate("2004-03-07 18:00:00"), 38053.75);
    for (const char* text :
         {"", "2004-3-7", "2004-03-07x", "2004-03-07 18", "2004-02-30", "2004/03/07", "2004-03-0a"}) {
        EXPECT_FALSE(ParseIsoDate(text)) << text;
    }
}

TEST(DateText, TextForms) {
    EXPECT_EQ(DateText(38053), "2004-3-7");
    EXPECT_EQ(DateText(38053.25), "2004-3-7 6:00:00");
    EXPECT_EQ(DateText(-657434), "0100-1-1");
    EXPECT_EQ(DateText(0), "0:00:00");
    EXPECT_EQ(DateText(0.5), "12:00:00");
    EXPECT_EQ(IsoDateText(38053), "2004-03-07");
    EXPECT_EQ(IsoDateText(38053.25), "2004-03-07 06:00:00");
    EXPECT_EQ(IsoDateText(38053.25, 'T'), "2004-03-07T06:00:00");
    EXPECT_EQ(IsoDateText(0.5), "1899-12-30 12:00:00");
    EXPECT_EQ(IsoDateText(-657434), "0100-01-01");
}

}  // namespace
}  // namespace kpTables::text
