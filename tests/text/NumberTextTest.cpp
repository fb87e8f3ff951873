#include "text/NumberText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string_view>

namespace kpTables::text {
namespace {

TEST(NumberText, FifteenDigitsAtMost) {
    EXPECT_EQ(NumberText(0.1 + 0.2), "0.3");
    EXPECT_EQ(NumberText(-200.0 / 3), "-66.6666666666667");
    EXPECT_EQ(NumberText(1.0 / 3000), "3.33333333333333E-04");
    EXPECT_EQ(NumberText(1e15), "1E+15");
    EXPECT_EQ(NumberText(-0.0), "0");
}

TEST(NumberText, WholeNumbers) {
    EXPECT_EQ(WholeText(0), "0");
    EXPECT_EQ(WholeText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(NumberText, TheLongestFitTheBuffer) {
    for (const double value : {-std::numeric_limits<double>::max(), -std::numeric_limits<double>::denorm_min(),
                               -1.23456789012345e-15, -123456789012345.6, -0.123456789012345}) {
        char buffer[kLongestNumberText];
        const char* end = WriteNumber(buffer, value);
        EXPECT_EQ(std::string_view(buffer, end), NumberText(value));
    }
}

TEST(NumberText, Booleans) {
    EXPECT_STREQ(BooleanText(true), "True");
    EXPECT_STREQ(BooleanText(false), "False");
}

}  // namespace
}  // namespace kpTables::text
