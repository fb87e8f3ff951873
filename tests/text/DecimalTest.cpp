#include "text/Decimal.h"

#include <gtest/gtest.h>

namespace kpTables::text {
namespace {

TEST(Decimal, ReadsAsVisualBasicReadsANumber) {
    struct Case {
        const char* text;
        double value;
    };
    const Case cases[] = {{" 12 ", 12}, {"1,234.5", 1234.5}, {"- 5", -5},     {"5-", -5},
                          {"(5)", -5},  {".5", 0.5},         {"1d-3", 0.001}, {"&HFF", 255},
                          {"&O17", 15}, {"￥12.5", 12.5},    {"-$12", -12},   {"1e-400", 0}};
    for (const Case& c : cases) EXPECT_EQ(ParseNumber(c.text), c.value) << c.text;
    for (const char* text : {"", "abc", "1 2", "1.2.3", "--5", "(5", "e3", "1e", "&H", "２", "12元", "1e400"}) {
        EXPECT_FALSE(ParseNumber(text)) << text;
    }
}

TEST(Decimal, ReadsPlainTextsExactly) {
    EXPECT_EQ(Decimal::ReadPlain("-12.34565")->ToAmount(), -123456);
    EXPECT_EQ(Decimal::ReadPlain("0.00005000000000000000000000000001")->ToAmount(), 1);
    EXPECT_EQ(Decimal::ReadPlain("922337203685477.5807")->ToAmount(), 9223372036854775807);
    EXPECT_EQ(Decimal::ReadPlain("922337203685477.5808")->ToAmount(), std::nullopt);
    for (const char* text : {"", ".", "1,000", " 1", "1e3", "(1)"}) EXPECT_FALSE(Decimal::ReadPlain(text)) << text;
}

TEST(Decimal, TheNumberAtATextsStart) {
    struct Case {
        const char* text;
        double value;
    };
    const Case cases[] = {{"12abc", 12}, {" 1 2.5x", 12.5}, {"-3", -3},   {"+7", 7},     {"abc", 0},    {"", 0},
                          {"-", 0},      {".5", 0.5},       {".", 0},     {"1e3", 1000}, {"1d3", 1000}, {"&HFF", 255},
                          {"&o17", 15},  {"&", 0},          {"12月", 12}, {"nan", 0},    {"inf", 0}};
    for (const Case& c : cases) EXPECT_EQ(LeadingNumber(c.text), c.value) << c.text;
}

}  // namespace
}  // namespace kpTables::text
