#include "text/CodePage936.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>
#include <unicode/utf16.h>

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

/// ICU's table of the code page.
class IcuCodePage {
public:
    IcuCodePage() {
        UErrorCode status = U_ZERO_ERROR;
        converter_ = ucnv_open("windows-936", &status);
        ucnv_setSubstChars(converter_, "?", 1, &status);
        EXPECT_TRUE(U_SUCCESS(status));
    }
    ~IcuCodePage() { ucnv_close(converter_); }
    IcuCodePage(const IcuCodePage&) = delete;
    IcuCodePage& operator=(const IcuCodePage&) = delete;

    /// 0 for a character that ICU omits, such as some without a glyph.
    int CodeOf(char32_t character) const {
        UChar units[U16_MAX_LENGTH];
        int count = 0;
        U16_APPEND_UNSAFE(units, count, static_cast<UChar32>(character));
        unsigned char bytes[8] = {};
        UErrorCode status = U_ZERO_ERROR;
        const int size =
            ucnv_fromUChars(converter_, reinterpret_cast<char*>(bytes), sizeof bytes, units, count, &status);
        return size == 2 ? bytes[0] << 8 | bytes[1] : bytes[0];
    }

    char32_t CharacterOf(int code) const {
        const char bytes[] = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
        const char* source = code > 0xFF ? bytes : bytes + 1;
        ucnv_reset(converter_);
        UErrorCode status = U_ZERO_ERROR;
        return static_cast<char32_t>(ucnv_getNextUChar(converter_, &source, bytes + sizeof bytes, &status));
    }

private:
    UConverter* converter_;
};

TEST(CodePage936, CodeOfEveryCharacterAsIcu) {
    const IcuCodePage icu;
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        const int code = icu.CodeOf(c);
        ASSERT_EQ(CodeOf936(c), code == 0 && c != 0 ? '?' : code) << static_cast<std::uint32_t>(c);
    }
    EXPECT_EQ(CodeOf936(0xFFFFFFFF), '?');
}

TEST(CodePage936, CharacterOfEveryCodeAsIcu) {
    const IcuCodePage icu;
    for (int code = 0; code <= 0xFFFF; ++code) {
        ASSERT_EQ(CharacterOf936(static_cast<std::uint16_t>(code)), icu.CharacterOf(code)) << code;
    }
}

}  // namespace
}  // namespace kpTables::text
