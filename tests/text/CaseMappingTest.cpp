#include "text/CaseMapping.h"

#include <gtest/gtest.h>
#include <unicode/uchar.h>

namespace kpTables::text {
namespace {

TEST(CaseMapping, EveryCharacterAsIcu) {
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        const auto code = static_cast<UChar32>(c);
        ASSERT_EQ(UpperCase(c), static_cast<char32_t>(u_toupper(code))) << std::hex << code;
        ASSERT_EQ(LowerCase(c), static_cast<char32_t>(u_tolower(code))) << std::hex << code;
        ASSERT_EQ(FoldCase(c), static_cast<char32_t>(u_foldCase(code, U_FOLD_CASE_DEFAULT))) << std::hex << code;
    }
}

TEST(CaseMapping, TextsCharacterByCharacter) {
    EXPECT_EQ(UpperCase("straße ａφж水泥①ⓐ"), "STRAßE ＡΦЖ水泥①Ⓐ");
    EXPECT_EQ(LowerCase("STRASSE ＡΦЖΣ水泥Ⓐ"), "strasse ａφжσ水泥ⓐ");
    EXPECT_EQ(FoldCase("ΣσςÄK"), "σσσäk");
    EXPECT_EQ(UpperCase("a\xE5z"), "A\uFFFDZ");
    EXPECT_EQ(UpperCase(""), "");
}

}  // namespace
}  // namespace kpTables::text
