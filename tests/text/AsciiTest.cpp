#include "text/Ascii.h"

#include <gtest/gtest.h>

namespace kpTables::text {
namespace {

TEST(Ascii, LowersLettersAlone) {
    EXPECT_EQ(Lower('A'), 'a');
    EXPECT_EQ(Lower('Z'), 'z');
    for (const char c : std::string_view("az09@[`{_ \xC9")) EXPECT_EQ(Lower(c), c);
}

TEST(Ascii, EqualsIgnoringTheCaseOfLetters) {
    EXPECT_TRUE(EqualsIgnoringCase("", ""));
    EXPECT_TRUE(EqualsIgnoringCase("pdID", "PDid"));
    EXPECT_TRUE(EqualsIgnoringCase("商品ID", "商品id"));
    EXPECT_FALSE(EqualsIgnoringCase("pdID", "pdID "));
    EXPECT_FALSE(EqualsIgnoringCase("a@", "a`"));
    EXPECT_FALSE(EqualsIgnoringCase("É", "é"));
}

TEST(Ascii, Digits) {
    for (const char c : std::string_view("0123456789")) EXPECT_TRUE(IsDigit(c));
    for (const char c : std::string_view("/:a \xB2")) EXPECT_FALSE(IsDigit(c));
}

}  // namespace
}  // namespace kpTables::text
