#include "text/Calendar.h"

#include <gtest/gtest.h>

#include <limits>

namespace kpTables::text {
namespace {

TEST(Calendar, EveryDayIsReadAsItWasCounted) {
    DateParts expected{100, 1, 1, 0, 0, 0};
    for (double serial = -657434; serial <= 2958465; ++serial) {
        const DateParts parts = PartsOf(serial);
        ASSERT_EQ(parts.year, expected.year) << serial;
        ASSERT_EQ(parts.month, expected.month) << serial;
        ASSERT_EQ(parts.day, expected.day) << serial;
        ASSERT_EQ(SerialOf(parts), serial);
        ++expected.day;
        if (SerialOf(expected)) continue;
        expected.day = 1;
        if (++expected.month <= kMonthsPerYear) continue;
        expected.month = 1;
        ++expected.year;
    }
    EXPECT_EQ(expected.year, 10000);
}

TEST(Calendar, DaysThatAreNone) {
    const DateParts none[] = {{99, 1, 1, 0, 0, 0},    {10000, 1, 1, 0, 0, 0}, {2004, 0, 1, 0, 0, 0},
                              {2004, 13, 1, 0, 0, 0}, {2003, 2, 29, 0, 0, 0}, {1900, 2, 29, 0, 0, 0},
                              {2004, 4, 31, 0, 0, 0}, {2004, 1, 0, 0, 0, 0},  {2004, 1, 1, 24, 0, 0},
                              {2004, 1, 1, 0, 60, 0}, {2004, 1, 1, 0, 0, 60}, {2004, 1, 1, -1, 0, 0}};
    for (const DateParts& p : none) EXPECT_FALSE(SerialOf(p)) << p.year << '-' << p.month << '-' << p.day;
}

TEST(Calendar, MonthsAndDaysRunOver) {
    EXPECT_EQ(SerialOfDay(2004, 14, 1), SerialOf({2005, 2, 1, 0, 0, 0}));
    EXPECT_EQ(SerialOfDay(2004, 3, 0), SerialOf({2004, 2, 29, 0, 0, 0}));
    EXPECT_EQ(SerialOfDay(29, 1, 1), SerialOf({2029, 1, 1, 0, 0, 0}));
    EXPECT_EQ(SerialOfDay(-1, 1, 1), std::nullopt);
    EXPECT_EQ(SerialOfDay(9999, 12, 32), std::nullopt);
    EXPECT_EQ(SerialOfDay(2004, std::numeric_limits<int>::max(), 1), std::nullopt);
    EXPECT_EQ(SerialOfDay(2004, 1, std::numeric_limits<int>::min()), std::nullopt);
}

TEST(Calendar, YearsOfTwoDigits) {
    EXPECT_EQ(FullYear(0), 2000);
    EXPECT_EQ(FullYear(29), 2029);
    EXPECT_EQ(FullYear(30), 1930);
    EXPECT_EQ(FullYear(99), 1999);
    EXPECT_EQ(FullYear(100), 100);
    EXPECT_EQ(FullYear(-1), -1);
}

TEST(Calendar, TimesCountAwayFromMidnight) {
    const DateParts morning = PartsOf(-1.25);
    EXPECT_EQ(morning.day, 29);
    EXPECT_EQ(morning.hour, 6);
    EXPECT_EQ(SerialOf({1899, 12, 29, 6, 0, 0}), -1.25);
    EXPECT_EQ(SecondOfDay(-1.25), 6 * kSecondsPerHour);
    EXPECT_EQ(SecondOfDay(38053 + 86399.6 / kSecondsPerDay), 0);
    EXPECT_EQ(PartsOf(2958465 + 86399.9 / kSecondsPerDay).second, 59);
    EXPECT_EQ(DayNumber(-1.25), -1);
    EXPECT_EQ(DayNumber(38053.9), 38053);
}

TEST(Calendar, SerialsInRange) {
    EXPECT_TRUE(IsSerial(-657434.9));
    EXPECT_FALSE(IsSerial(-657435));
    EXPECT_TRUE(IsSerial(2958465.9));
    EXPECT_FALSE(IsSerial(2958466));
    EXPECT_FALSE(IsSerial(std::numeric_limits<double>::quiet_NaN()));
}

TEST(Calendar, Weekdays) {
    EXPECT_EQ(WeekdayOf(38053), 1);  // 2004-03-07, a Sunday
    EXPECT_EQ(WeekdayOf(38053, 2), 7);
    EXPECT_EQ(WeekdayOf(0), 7);
    EXPECT_EQ(WeekdayOf(-1), 6);
    EXPECT_EQ(WeekdayOf(-657434, 7), WeekdayOf(-657434 + 7, 7));
}

}  // namespace
}  // namespace kpTables::text
