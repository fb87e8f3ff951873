// Text forms of numbers, and texts that read as numbers.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "kpTables/Convert.h"

namespace kpTables {
namespace {

TEST(NumberText, Double) {
    struct Case {
        double value;
        const char* text;
    };
    const Case cases[] = {
        {0, "0"},
        {-0.0, "0"},
        {1, "1"},
        {-1, "-1"},
        {0.5, "0.5"},
        {-0.5, "-0.5"},
        {0.1, "0.1"},
        {0.1 + 0.2, "0.3"},
        {12.5, "12.5"},
        {100, "100"},
        {1234567.891, "1234567.891"},
        {200.0 / 3, "66.6666666666667"},
        {100.0 / 3, "33.3333333333333"},
        {1.0 / 3, "0.333333333333333"},
        {2.0 / 3, "0.666666666666667"},
        {-2.0 / 3, "-0.666666666666667"},
        {1.0 / 30, "3.33333333333333E-02"},
        {1.0 / 3000, "3.33333333333333E-04"},
        {0.05, "0.05"},
        {0.0001, "0.0001"},
        {0.00001, "0.00001"},
        {-0.000015, "-0.000015"},
        {0.0078125, "0.0078125"},
        {1e-10, "0.0000000001"},
        {1e-15, "0.000000000000001"},
        {1e-16, "1E-16"},
        {1.5e-15, "1.5E-15"},
        {12345678901234.5, "12345678901234.5"},
        {123456789012345.0, "123456789012345"},
        {999999999999999.0, "999999999999999"},
        {999999999999999.5, "1E+15"},
        {1e15, "1E+15"},
        {-1e15, "-1E+15"},
        {1e16, "1E+16"},
        {1234567890123456.0, "1.23456789012346E+15"},
        {1.5e100, "1.5E+100"},
        {1e-100, "1E-100"},
        {5e-324, "4.94065645841247E-324"},
        {std::numeric_limits<double>::max(), "1.79769313486232E+308"},
        {99999999999999.99, "100000000000000"},
        {0.99999999999999999, "1"},
        {0.9999999999999999, "1"},
        {9.9999999999999999e22, "1E+23"},
        {2.675, "2.675"},
        {1e14, "100000000000000"},
        {std::numeric_limits<double>::infinity(), "1.#INF"},
        {-std::numeric_limits<double>::infinity(), "-1.#INF"},
        {std::numeric_limits<double>::quiet_NaN(), "-1.#IND"},
    };
    for (const Case& c : cases) EXPECT_EQ(Text(c.value), c.text);
}

TEST(NumberText, WholeNumbersAndBooleans) {
    EXPECT_EQ(Text(std::int32_t{0}), "0");
    EXPECT_EQ(Text(std::int32_t{42}), "42");
    EXPECT_EQ(Text(std::numeric_limits<std::int32_t>::max()), "2147483647");
    EXPECT_EQ(Text(std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(Text(true), "True");
    EXPECT_EQ(Text(false), "False");
}

TEST(NumberText, TextsThatReadAsNumbers) {
    struct Case {
        const char* text;
        double value;
    };
    const Case cases[] = {
        {"0", 0},
        {"12.5", 12.5},
        {" 12 ", 12},
        {"\t12\r\n", 12},
        {"1,234.5", 1234.5},
        {"1,2,3", 123},
        {"1,234,567.25", 1234567.25},
        {"-5", -5},
        {"+5", 5},
        {"- 5", -5},
        {"5-", -5},
        {"5 -", -5},
        {"5+", 5},
        {"(5)", -5},
        {"( 5 )", -5},
        {".5", 0.5},
        {"-.5", -0.5},
        {"5.", 5},
        {"007", 7},
        {"0.0005", 0.0005},
        {"1e3", 1000},
        {"1E3", 1000},
        {"1d3", 1000},
        {"1D-3", 0.001},
        {"1e+3", 1000},
        {"-2.5e-1", -0.25},
        {"1e3-", -1000},
        {"&HFF", 255},
        {"&hff", 255},
        {"&HFFFF", 65535},
        {"&H7FFFFFFF", 2147483647.0},
        {"&HFFFFFFFF", -1},
        {"&H80000000", -2147483648.0},
        {"&O17", 15},
        {" &o7 ", 7},
        {"¥12", 12},
        {"￥12.5", 12.5},
        {"$12", 12},
        {"-$12", -12},
        {"$-12", -12},
        {"($12)", -12},
        {"$ 1,200", 1200},
        {"12$", 12},
        {"123456789012345678901234567890", 123456789012345678901234567890.0},
        {"0.1000000000000000055511151231257827021181583404541015625", 0.1},
        {"1e-400", 0},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
    };
    for (const Case& c : cases) {
        const auto value = ParseNumber(c.text);
        ASSERT_TRUE(value.has_value()) << c.text;
        EXPECT_EQ(*value, c.value) << c.text;
        EXPECT_TRUE(IsNumeric(c.text)) << c.text;
        EXPECT_EQ(CDbl(c.text), c.value) << c.text;
    }
}

TEST(NumberText, TextsThatAreNoNumbers) {
    const char* const cases[] = {
        "",      " ",     "abc",         "1 2",   "1.2.3", "--5", "-5-",    "(5",   "5)",   "()",
        "(-5)",  "-",     "+",           ".",     "-.",    "$",   "$$5",    "$5$",  ",5",   "1.5,000",
        "e3",    "1e",    "1e+",         "1e3.5", "1 e3",  "1f3", "&H",     "&",    "&HG",  "&HFG",
        "&O8",   "-&HFF", "&H1FFFFFFFF", "0x10",  "12a",   "a12", "1,234a", "True", "２",   "2004-3-7",
        "12:30", "1e400", "-1e400",      "1/2",   "Null",  "nan", "inf",    "五",   "12元",
    };
    for (const char* text : cases) {
        EXPECT_FALSE(ParseNumber(text).has_value()) << text;
        EXPECT_FALSE(IsNumeric(text)) << text;
    }
}

TEST(NumberText, IsNumericOfOtherTypes) {
    EXPECT_TRUE(IsNumeric(Variant()));
    EXPECT_TRUE(IsNumeric(true));
    EXPECT_TRUE(IsNumeric(std::int16_t{1}));
    EXPECT_TRUE(IsNumeric(std::int32_t{1}));
    EXPECT_TRUE(IsNumeric(1.5));
    EXPECT_TRUE(IsNumeric(Currency::FromScaled(1)));
    EXPECT_FALSE(IsNumeric(Variant::Null()));
    EXPECT_FALSE(IsNumeric(Variant::Missing()));
    EXPECT_FALSE(IsNumeric(Date::FromSerial(1)));
    EXPECT_FALSE(IsNumeric(nullptr));
    EXPECT_FALSE(IsNumeric(std::make_shared<VariantArray>()));
}

TEST(NumberText, FifteenDigitsReadBackToTheSameText) {
    std::uint64_t seed = 20041231;
    for (int i = 0; i < 20000; ++i) {
        seed = seed * 6364136223846793005u + 1442695040888963407u;
        const double mantissa = static_cast<double>(static_cast<std::int64_t>(seed >> 14)) / 1e6;
        const double value = mantissa * std::pow(10.0, static_cast<double>((seed >> 3) % 60) - 30);
        const std::string text = Text(value);
        const auto back = ParseNumber(text);
        ASSERT_TRUE(back.has_value()) << text;
        EXPECT_EQ(Text(*back), text);
        EXPECT_NEAR(*back, value, std::fabs(value) * 1e-14);
    }
}

}  // namespace
}  // namespace kpTables
