#include "text/Format.h"

#include <gtest/gtest.h>

#include "text/DateText.h"

namespace kpTables::text {
namespace {

struct NumberCase {
    double number;
    const char* pattern;
    const char* formatted;
};

struct DateCase {
    const char* date;
    const char* pattern;
    const char* formatted;
};

struct TextCase {
    const char* text;
    const char* pattern;
    const char* formatted;
};

void ExpectFormatted(const NumberCase& c) {
    EXPECT_EQ(FormatNumber(c.number, c.pattern), c.formatted) << c.number << ' ' << c.pattern;
}

void ExpectFormatted(const DateCase& c) {
    EXPECT_EQ(FormatDate(ParseIsoDate(c.date).value(), c.pattern), c.formatted) << c.date << ' ' << c.pattern;
}

void ExpectFormatted(const TextCase& c) {
    EXPECT_EQ(FormatText(c.text, c.pattern), c.formatted) << c.text << ' ' << c.pattern;
}

TEST(Format, NamedPatternsOfNumbers) {
    const NumberCase cases[] = {
        {1234567, "standard", "1,234,567.00"},
        {1234.5, "Fixed", "1234.50"},
        {0.5, "Percent", "50.00%"},
        {-1234.5, "Currency", "￥-1,234.50"},
        {12345.678, "Scientific", "1.23E+04"},
        {5, "General Number", "5"},
        {-1, "Yes/No", "Yes"},
        {0, "On/Off", "Off"},
    };
    for (const NumberCase& c : cases) ExpectFormatted(c);
}

TEST(Format, NamedPatternsOfDates) {
    const DateCase cases[] = {
        {"2004-03-07 13:05:09", "General Date", "2004-3-7 13:05:09"},
        {"2004-03-07 13:05:09", "Short Date", "2004-3-7"},
        {"2004-03-07 13:05:09", "Long Date", "2004年3月7日"},
        {"2004-03-07 13:05:09", "Medium Date", "04-03-07"},
        {"2004-03-07 03:05:09", "Medium Time", "03:05 AM"},
        {"2004-03-07 13:05:09", "Short Time", "13:05"},
        {"2004-03-07 13:05:09", "Long Time", "13:05:09"},
    };
    for (const DateCase& c : cases) ExpectFormatted(c);
}

TEST(Format, ANamedPatternOfNumbersLeavesOtherTexts) {
    const TextCase cases[] = {
        {"abc", "Standard", "abc"},
    };
    for (const TextCase& c : cases) ExpectFormatted(c);
}

TEST(Format, PatternsOfNumbers) {
    const NumberCase cases[] = {
        {12345678, "#,##0,", "12,346"},
        {12345678, "0,,.0", "12.3"},
        {5, "0,000", "0,005"},
        {1234567, "000-0000", "123-4567"},
        {12.5, ".00", "12.50"},
        {123, "\\x0", "x123"},
        {123, "\"n\"0", "n123"},
        {0.00012, "0.00E+00", "1.20E-04"},
        {1e-300, "0.0E+00", "1.0E-300"},
        {2e300, "0E+0", "2E+300"},
        {9.999, "0.00e-00", "1.00e01"},
        {12345, "##0.0E+0", "123.5E+2"},
        {0, "0.0E+0", "0.0E+0"},
        {-5, "0;;", "-5"},
        {0, "是;是;否", "否"},
        {-1, "\"a;b\";\"c;d\"", "c;d"},
        {38053, "yyyy-m-d", "2004-3-7"},
        {5, "@@@", "  5"},
        {5, "", "5"},
    };
    for (const NumberCase& c : cases) ExpectFormatted(c);
}

TEST(Format, PatternsOfDates) {
    const DateCase cases[] = {
        {"2004-03-07", "dddd, mmmm d, yyyy", "Sunday, March 7, 2004"},
        {"2004-03-07", "ddd mmm", "Sun Mar"},
        {"2004-03-07", "w ww q y", "1 11 1 67"},
        {"2004-12-31", "ww q y", "53 4 366"},
        {"1899-12-29", "w", "6"},
        {"2004-03-07 13:05:09", "hh:nn:ss", "13:05:09"},
        {"2004-03-07 13:05:09", "h:m m", "13:5 3"},
        {"2004-03-07 13:05:09", "hh:mm AM/PM", "01:05 PM"},
        {"2004-03-07 00:05:09", "h am/pm", "12 am"},
        {"2004-03-07 12:05:09", "hA/P", "12P"},
        {"2004-03-07 09:05:09", "hAMPM ttttt", "9AM 9:05:09"},
        {"2004-03-07", "yyyy\\year", "2004year"},
        {"2004-03-07", "c", "2004-3-7"},
        {"2004-03-07", "\"d\"d", "d7"},
        {"2004-03-07", "0", "38053"},
    };
    for (const DateCase& c : cases) ExpectFormatted(c);
}

TEST(Format, PatternsOfTexts) {
    const TextCase cases[] = {
        {"abc", "@@@@@", "  abc"},
        {"abc", "!@@@@@", "abc  "},
        {"abc", "&&&&&", "abc"},
        {"abcdef", "@@@", "abcdef"},
        {"123456789", "@@@-@@@@", "12345-6789"},
        {"abcdefg", "!@@@-@@", "abc-defg"},
        {"aBc", ">", "ABC"},
        {"aBc", "<@@@@", " abc"},
        {"中文", "@@@", " 中文"},
        {"", "@;无", "无"},
        {"abc", "张", "张"},
        {"12.345", "0.00", "12.35"},
        {"x", "yyyy", "x"},
        {"2004-3-7", "yyyymmdd", "20040307"},
        {"38053", "yyyy", "2004"},
        {"a", "", "a"},
    };
    for (const TextCase& c : cases) ExpectFormatted(c);
}

TEST(Format, OverflowIsNothing) {
    EXPECT_EQ(FormatNumber(1e308, "0%"), std::nullopt);
    EXPECT_EQ(FormatNumber(1e10, "yyyy"), std::nullopt);
    EXPECT_EQ(FormatText("1e10", "yyyy"), std::nullopt);
}

}  // namespace
}  // namespace kpTables::text
