#include "kpTables/Date.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Raised.h"

namespace kpTables {
namespace {

Date At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return Date::FromParts({year, month, day, hour, minute, second}).value();
}

TEST(Date, SerialNumbers) {
    struct Case {
        double serial;
        Date::Parts parts;
    };
    const Case cases[] = {
        {0, {1899, 12, 30, 0, 0, 0}},
        {1, {1899, 12, 31, 0, 0, 0}},
        {2, {1900, 1, 1, 0, 0, 0}},
        {60, {1900, 2, 28, 0, 0, 0}},
        {61, {1900, 3, 1, 0, 0, 0}},
        {-1, {1899, 12, 29, 0, 0, 0}},
        {-1.25, {1899, 12, 29, 6, 0, 0}},
        {-1.75, {1899, 12, 29, 18, 0, 0}},
        {0.5, {1899, 12, 30, 12, 0, 0}},
        {36526, {2000, 1, 1, 0, 0, 0}},
        {36585, {2000, 2, 29, 0, 0, 0}},
        {38053, {2004, 3, 7, 0, 0, 0}},
        {38053.520833333336, {2004, 3, 7, 12, 30, 0}},
        {38053.99999, {2004, 3, 7, 23, 59, 59}},
        {-657434, {100, 1, 1, 0, 0, 0}},
        {-657434.5, {100, 1, 1, 12, 0, 0}},
        {2958465, {9999, 12, 31, 0, 0, 0}},
        {2958465.999988426, {9999, 12, 31, 23, 59, 59}},
    };
    for (const Case& c : cases) {
        const Date::Parts p = Date::FromSerial(c.serial).ToParts();
        EXPECT_EQ(p.year, c.parts.year) << c.serial;
        EXPECT_EQ(p.month, c.parts.month) << c.serial;
        EXPECT_EQ(p.day, c.parts.day) << c.serial;
        EXPECT_EQ(p.hour, c.parts.hour) << c.serial;
        EXPECT_EQ(p.minute, c.parts.minute) << c.serial;
        EXPECT_EQ(p.second, c.parts.second) << c.serial;
        const auto date = Date::FromParts(c.parts);
        ASSERT_TRUE(date.has_value());
        EXPECT_NEAR(date->Serial(), c.serial, 1e-5) << c.serial;
    }
}

TEST(Date, TimeIsToTheNearestSecond) {
    // 23:59:59.6 is midnight of the next day, on either side of day 0.
    EXPECT_EQ(Date::FromSerial(38053 + 86399.6 / 86400).ToText(), "2004-3-8");
    EXPECT_EQ(Date::FromSerial(-2 - 86399.6 / 86400).ToText(), "1899-12-29");
    EXPECT_FALSE(Date::FromSerial(38053 + 0.4 / 86400).HasTime());
    EXPECT_TRUE(Date::FromSerial(38053 + 0.6 / 86400).HasTime());
    // The calendar's last day does not run over.
    EXPECT_EQ(Date::FromSerial(2958465 + 86399.6 / 86400).ToText(), "9999-12-31 23:59:59");
}

TEST(Date, SerialOutOfRangeIsOverflow) {
    for (double serial : {2958466.0, -657435.0, 1e300, -1e300, std::nan("")}) {
        EXPECT_EQ(Raised([&] { Date::FromSerial(serial); }), 6) << serial;
    }
    EXPECT_EQ(Date::FromSerial(-657434.999).ToText(), "0100-1-1 23:58:34");
}

TEST(Date, PartsThatAreNone) {
    const Date::Parts cases[] = {
        {2023, 2, 29, 0, 0, 0}, {1900, 2, 29, 0, 0, 0}, {2023, 2, 30, 0, 0, 0}, {2023, 4, 31, 0, 0, 0},
        {2023, 0, 1, 0, 0, 0},  {2023, 13, 1, 0, 0, 0}, {2023, 1, 0, 0, 0, 0},  {2023, 1, 32, 0, 0, 0},
        {99, 1, 1, 0, 0, 0},    {10000, 1, 1, 0, 0, 0}, {2023, 1, 1, 24, 0, 0}, {2023, 1, 1, 0, 60, 0},
        {2023, 1, 1, 0, 0, 60}, {2023, 1, 1, -1, 0, 0}, {2023, -1, 1, 0, 0, 0},
    };
    for (const auto& p : cases) {
        EXPECT_FALSE(Date::FromParts(p).has_value()) << p.year << ' ' << p.month << ' ' << p.day << ' ' << p.hour;
    }
    EXPECT_TRUE(Date::FromParts({2000, 2, 29, 0, 0, 0}).has_value());
}

TEST(Date, DateSerialRunsOver) {
    struct Case {
        int year, month, day;
        const char* text;
    };
    const Case cases[] = {
        {2004, 3, 7, "2004-3-7"},     {2004, 13, 1, "2005-1-1"},    {2004, 0, 1, "2003-12-1"},
        {2004, -11, 1, "2003-1-1"},   {2004, -12, 1, "2002-12-1"},  {2004, 3, 0, "2004-2-29"},
        {2003, 3, 0, "2003-2-28"},    {2004, 1, -30, "2003-12-1"},  {2004, 2, 30, "2004-3-1"},
        {2004, 1, 366, "2004-12-31"}, {2004, 25, 1, "2006-1-1"},    {4, 1, 1, "2004-1-1"},
        {29, 1, 1, "2029-1-1"},       {30, 1, 1, "1930-1-1"},       {99, 12, 31, "1999-12-31"},
        {100, 1, 1, "0100-1-1"},      {9999, 12, 31, "9999-12-31"}, {1900, 1, 1, "1900-1-1"},
        {1998, 121, 1, "2008-1-1"},
    };
    for (const Case& c : cases) EXPECT_EQ(Date::FromYearMonthDay(c.year, c.month, c.day).ToText(), c.text);
    EXPECT_EQ(Raised([] { Date::FromYearMonthDay(-1, 1, 1); }), 5);
    EXPECT_EQ(Raised([] { Date::FromYearMonthDay(10000, 1, 1); }), 5);
    EXPECT_EQ(Raised([] { Date::FromYearMonthDay(9999, 13, 1); }), 5);
    EXPECT_EQ(Raised([] { Date::FromYearMonthDay(100, 0, 1); }), 5);
    EXPECT_EQ(Raised([] { Date::FromYearMonthDay(2004, 2147483647, 1); }), 5);
    EXPECT_EQ(Raised([] { Date::FromYearMonthDay(2004, -2147483647, 1); }), 5);
    EXPECT_EQ(Raised([] { Date::FromYearMonthDay(2004, 1, 2147483647); }), 5);
}

TEST(Date, TextForms) {
    struct Case {
        Date date;
        const char* text;
        const char* iso;
    };
    const Case cases[] = {
        {At(2004, 3, 7), "2004-3-7", "2004-03-07"},
        {At(2004, 12, 31), "2004-12-31", "2004-12-31"},
        {At(2004, 3, 7, 12, 30), "2004-3-7 12:30:00", "2004-03-07 12:30:00"},
        {At(2004, 3, 7, 9, 5, 1), "2004-3-7 9:05:01", "2004-03-07 09:05:01"},
        {At(2004, 3, 7, 0, 0, 1), "2004-3-7 0:00:01", "2004-03-07 00:00:01"},
        {At(1899, 12, 30), "0:00:00", "1899-12-30"},
        {At(1899, 12, 30, 12, 30), "12:30:00", "1899-12-30 12:30:00"},
        {At(1899, 12, 29), "1899-12-29", "1899-12-29"},
        {At(1899, 12, 29, 6), "1899-12-29 6:00:00", "1899-12-29 06:00:00"},
        {At(100, 1, 1), "0100-1-1", "0100-01-01"},
        {At(9999, 12, 31, 23, 59, 59), "9999-12-31 23:59:59", "9999-12-31 23:59:59"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.date.ToText(), c.text);
        EXPECT_EQ(c.date.ToIso(), c.iso);
    }
    EXPECT_EQ(At(2004, 3, 7, 12, 30).ToIso('T'), "2004-03-07T12:30:00");
    EXPECT_EQ(At(2004, 3, 7).Year(), 2004);
    EXPECT_EQ(At(2004, 3, 7).Month(), 3);
    EXPECT_EQ(At(2004, 3, 7).Day(), 7);
}

TEST(Date, Parse) {
    struct Case {
        const char* text;
        const char* iso;
    };
    const Case cases[] = {
        {"2004-3-7", "2004-03-07"},
        {"2004-03-07", "2004-03-07"},
        {"2004/3/7", "2004-03-07"},
        {"2004.3.7", "2004-03-07"},
        {"2004年3月7日", "2004-03-07"},
        {"2004年03月07日", "2004-03-07"},
        {"  2004-3-7  ", "2004-03-07"},
        {"3/7/2004", "2004-03-07"},
        {"12-31-1999", "1999-12-31"},
        {"04-3-7", "2004-03-07"},
        {"29-1-1", "2029-01-01"},
        {"30-1-1", "1930-01-01"},
        {"99/12/31", "1999-12-31"},
        {"4-3-7", "2004-03-07"},
        {"0100-1-1", "0100-01-01"},
        {"9999-12-31", "9999-12-31"},
        {"2000-2-29", "2000-02-29"},
        {"2004-3-7 12:30", "2004-03-07 12:30:00"},
        {"2004-3-7 12:30:45", "2004-03-07 12:30:45"},
        {"2004-3-7  9:05", "2004-03-07 09:05:00"},
        {"2004-3-7 1:30 PM", "2004-03-07 13:30:00"},
        {"2004-3-7 1:30pm", "2004-03-07 13:30:00"},
        {"2004-3-7 12:30 AM", "2004-03-07 00:30:00"},
        {"2004-3-7 12:30 PM", "2004-03-07 12:30:00"},
        {"2004-3-7 0:00:00", "2004-03-07"},
        {"2004年3月7日 12:30", "2004-03-07 12:30:00"},
        {"2004年3月7日12:30", "2004-03-07 12:30:00"},
        {"3/7/2004 23:59:59", "2004-03-07 23:59:59"},
        {"12:30", "1899-12-30 12:30:00"},
        {"0:00", "1899-12-30"},
        {"9:05:07 AM", "1899-12-30 09:05:07"},
    };
    for (const Case& c : cases) {
        const auto date = Date::Parse(c.text);
        ASSERT_TRUE(date.has_value()) << c.text;
        EXPECT_EQ(date->ToIso(), c.iso) << c.text;
    }
}

TEST(Date, ParseRefuses) {
    const char* const cases[] = {
        "",
        " ",
        "abc",
        "2004",
        "38053",
        "2004-3-",
        "2004-3-7x",
        "2004-3-7 x",
        "2004-3-7 12",
        "2004-3-7 12:",
        "2004-3-7 24:00",
        "2004-3-7 12:60",
        "2004-3-7 12:30:60",
        "2004-3-7 13:00 PM",
        "2004-3-7 12:30 XM",
        "2004-3-7 12:30 P",
        "2004-3-7 12:30:45.5",
        "2004-3-7 12:30 2004-3-7",
        "2004-3-7 12:30PM x",
        "2004-3-712:30",
        "2004-3-7T12:30",
        "2023-2-29",
        "2023-02-30",
        "2023-4-31",
        "2023-0-1",
        "2023-13-1",
        "2023-1-0",
        "2023-1-32",
        "1900-2-29",
        "2004-3/7",
        "2004/3-7",
        "2004-003-7",
        "2004-3-007",
        "10000-1-1",
        "02004-3-7",
        "3/7/20040",
        "2004年3月7",
        "2004年13月7日",
        "2004-3月7日",
        "-2004-3-7",
        "2004--3-7",
        "2004-3-7-",
        "2004-3-7,",
        "二〇〇四年三月七日",
        "12:30:",
        "1:2:3:4",
        ":30",
        "100:00",
    };
    for (const char* text : cases) EXPECT_FALSE(Date::Parse(text).has_value()) << text;
}

TEST(Date, ParseIso) {
    struct Case {
        const char* text;
        const char* iso;
    };
    const Case cases[] = {
        {"2004-03-07", "2004-03-07"},
        {"0100-01-01", "0100-01-01"},
        {"2004-03-07 12:30", "2004-03-07 12:30:00"},
        {"2004-03-07T12:30", "2004-03-07 12:30:00"},
        {"2004-03-07 12:30:45", "2004-03-07 12:30:45"},
        {"2004-03-07T12:30:45", "2004-03-07 12:30:45"},
        {"1899-12-30 00:00:01", "1899-12-30 00:00:01"},
    };
    for (const Case& c : cases) {
        const auto date = Date::ParseIso(c.text);
        ASSERT_TRUE(date.has_value()) << c.text;
        EXPECT_EQ(date->ToIso(), c.iso);
    }
    for (const char* text : {"",
                             "2004-3-7",
                             "2004-03-7 ",
                             "2004/03/07",
                             "2004-03-07 ",
                             " 2004-03-07",
                             "2004-03-07x12:30",
                             "2004-03-07 12",
                             "2004-03-07 12:3",
                             "2004-03-07 12:30:4",
                             "2004-03-07 12-30-45",
                             "2004-03-07 24:00",
                             "2004-03-07 12:60",
                             "2023-02-29",
                             "2004-0a-07",
                             "2004-03-07 1a:30",
                             "0099-01-01",
                             "2004-03-07 12:30:45Z",
                             "+004-03-07",
                             "2004-03-07 12:30:4x"}) {
        EXPECT_FALSE(Date::ParseIso(text).has_value()) << text;
    }
}

TEST(Date, TimeOfDayIsAFractionOfTheDay) {
    EXPECT_EQ(Date::ParseIso("2004-03-07")->TimeOfDay(), 0);
    EXPECT_EQ(Date::ParseIso("2004-03-07T12:00:00")->TimeOfDay(), 0.5);
    EXPECT_EQ(Date::ParseIso("1899-12-29T18:00:00")->TimeOfDay(), 0.75) << "before day 0";
    EXPECT_EQ(Date::FromSerial(38053 + 0.3 / 86400).TimeOfDay(), 0) << "less than half a second";
}

TEST(Date, EveryDayRoundTrips) {
    Date::Parts previous{100, 1, 1, 0, 0, 0};
    int day = -657434;
    for (; day <= 2958465; ++day) {
        const Date::Parts p = Date::FromSerial(day).ToParts();
        const auto back = Date::FromParts(p);
        ASSERT_TRUE(back.has_value()) << day;
        ASSERT_EQ(back->Serial(), day);
        if (day == -657434) continue;
        const bool nextDay = p.year == previous.year && p.month == previous.month && p.day == previous.day + 1;
        const bool nextMonth = p.year == previous.year && p.month == previous.month + 1 && p.day == 1;
        const bool nextYear = p.year == previous.year + 1 && previous.month == 12 && p.month == 1 && p.day == 1;
        ASSERT_TRUE(nextDay || nextMonth || nextYear) << day;
        previous = p;
    }
    EXPECT_EQ(previous.year, 9999);
    EXPECT_EQ(previous.month, 12);
    EXPECT_EQ(previous.day, 31);
}

TEST(Date, TextsReadBack) {
    int second = 0;
    for (int day = -657434; day <= 2958465; day += 37) {
        second = (second + 7919) % 86400;
        Date::Parts p = Date::FromSerial(day).ToParts();
        p.hour = second / 3600;
        p.minute = second / 60 % 60;
        p.second = second % 60;
        const Date date = Date::FromParts(p).value();
        ASSERT_EQ(Date::Parse(date.ToText()), date) << date.ToText();
        ASSERT_EQ(Date::ParseIso(date.ToIso()), date) << date.ToIso();
        ASSERT_EQ(Date::ParseIso(date.ToIso('T')), date) << date.ToIso('T');
    }
}

TEST(Date, IsoTextsSortInOrderOfTime) {
    std::string previous;
    for (int day = -657434; day <= 2958465; day += 1009) {
        const std::string midnight = Date::FromSerial(day).ToIso();
        const std::string later = Date::FromSerial(day < 0 ? day - 0.75 : day + 0.75).ToIso();
        EXPECT_LT(previous, midnight);
        EXPECT_LT(midnight, later);
        previous = later;
    }
}

}  // namespace
}  // namespace kpTables
