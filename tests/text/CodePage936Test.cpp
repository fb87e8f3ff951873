#include "text/CodePage936.h"

#include <gtest/gtest.h>

#include <string_view>

namespace kpTables::text {
namespace {

TEST(CodePage936, DoubleByteCharacters) {
    // Punctuation, Greek, Cyrillic, kana, box drawing, circled numbers, ideographs of both planes of the code page,
    // compatibility ideographs, full-width forms, user-defined characters.
    for (char32_t c : std::u32string_view(U"，。、；：？！“”‘’（）《》【】…—·号件吨一丁龥镕囍堃喆ΑωЖяあンㄅㄩ│┌①⑩Ⅰ"
                                          U"℃№×÷±°§¤Ａｚ０９￥￠￡〇々〆\u3000\uFA0C\uFF5E\uE000\uE765áéüàêǎ")) {
        EXPECT_TRUE(IsDoubleByte936(c)) << static_cast<std::uint32_t>(c);
    }
}

TEST(CodePage936, OtherCharacters) {
    for (char32_t c = 0; c < 0xA0; ++c) EXPECT_FALSE(IsDoubleByte936(c)) << static_cast<std::uint32_t>(c);
    // The euro sign is the single byte 80; the rest is not in the code page.
    for (char32_t c : std::u32string_view(U"€ñçß¥£©®ı한글\u00A0\u0E01\uFEFF\uFFFD\uFFFF\uE766😀𠀀\U0010FFFF")) {
        EXPECT_FALSE(IsDoubleByte936(c)) << static_cast<std::uint32_t>(c);
    }
    EXPECT_FALSE(IsDoubleByte936(0xD800));
    EXPECT_FALSE(IsDoubleByte936(0xDFFF));
    EXPECT_FALSE(IsDoubleByte936(0x110000));
    EXPECT_FALSE(IsDoubleByte936(0xFFFFFFFF));
}

TEST(CodePage936, EveryUnifiedIdeographOfTheFirstBlockIsThere) {
    for (char32_t c = 0x4E00; c <= 0x9FA5; ++c) ASSERT_TRUE(IsDoubleByte936(c)) << static_cast<std::uint32_t>(c);
    EXPECT_FALSE(IsDoubleByte936(0x9FA6));
}

TEST(CodePage936, NumberOfCharacters) {
    // 21791 that the code page assigns, and 1894 user-defined ones.
    int count = 0;
    for (char32_t c = 0; c < 0x10000; ++c) count += IsDoubleByte936(c);
    EXPECT_EQ(count, 21791 + 1894);
}

}  // namespace
}  // namespace kpTables::text
