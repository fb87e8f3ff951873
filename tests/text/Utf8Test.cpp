#include "text/Utf8.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace kpTables::text {
namespace {

TEST(Utf8, DecodesTheFirstCharacter) {
    struct Case {
        std::string text;
        char32_t character;
        std::size_t bytes;
    };
    const Case cases[] = {
        {"A", U'A', 1},
        {std::string("\0x", 2), U'\0', 1},
        {"\x7F", 0x7F, 1},
        {"\xC2\x80", 0x80, 2},
        {"\xDF\xBF", 0x7FF, 2},
        {"\xE0\xA0\x80", 0x800, 3},
        {"号AB", U'号', 3},
        {"\xED\x9F\xBF", 0xD7FF, 3},
        {"\xEF\xBF\xBF", 0xFFFF, 3},
        {"\xF0\x90\x80\x80", 0x10000, 4},
        {"\xF4\x8F\xBF\xBF", 0x10FFFF, 4},
        // malformed
        {"\x80", 0xFFFD, 1},
        {"\xBF\xBF", 0xFFFD, 1},
        {"\xC0\x80", 0xFFFD, 1},  // longer than need be
        {"\xC1\xBF", 0xFFFD, 1},
        {"\xE0\x9F\xBF", 0xFFFD, 1},
        {"\xF0\x8F\xBF\xBF", 0xFFFD, 1},
        {"\xED\xA0\x80", 0xFFFD, 1},  // half of a pair
        {"\xED\xBF\xBF", 0xFFFD, 1},
        {"\xF4\x90\x80\x80", 0xFFFD, 1},  // beyond the last character
        {"\xF5\x80\x80\x80", 0xFFFD, 1},
        {"\xFF", 0xFFFD, 1},
        {"\xE5\x8F", 0xFFFD, 1},  // cut off
        {"\xC3", 0xFFFD, 1},
        {"\xE5"
         "A\x80",
         0xFFFD, 1},  // interrupted
        {"\xE5\x8F"
         "A",
         0xFFFD, 1},
    };
    for (const Case& each : cases) {
        const auto decoded = DecodeUtf8(each.text);
        EXPECT_EQ(decoded.character, each.character) << each.text;
        EXPECT_EQ(decoded.bytes, each.bytes) << each.text;
        EXPECT_EQ(decoded.IsValid(), each.character != kReplacement) << each.text;
    }
}

TEST(Utf8, CountsUtf16Units) {
    EXPECT_EQ(Utf16Length(""), 0u);
    EXPECT_EQ(Utf16Length("aé号"), 3u);
    EXPECT_EQ(Utf16Length("\xEF\xBF\xBF"), 1u);
    EXPECT_EQ(Utf16Length("\xF0\x90\x80\x80"), 2u);
    EXPECT_EQ(Utf16Length("\xE5\x8F"), 2u);
}

TEST(Utf8, AWrittenReplacementCharacterIsValid) {
    const auto decoded = DecodeUtf8("\xEF\xBF\xBD");
    EXPECT_EQ(decoded.character, kReplacement);
    EXPECT_EQ(decoded.bytes, 3u);
    EXPECT_TRUE(decoded.IsValid());
}

TEST(Utf8, EveryCharacterIsReadAsItWasWritten) {
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (character >= 0xD800 && character <= 0xDFFF) continue;
        std::string text;
        AppendCharacter(text, character);
        const auto decoded = DecodeUtf8(text);
        ASSERT_EQ(decoded.character, character);
        ASSERT_EQ(decoded.bytes, text.size());
    }
}

TEST(Utf8, WalksByCharacters) {
    const std::string text = "aé号\xF0\x9F\x9A\x9A\xFFz";
    std::u32string characters;
    for (std::size_t at = 0; at < text.size();) characters += NextCharacter(text, at);
    EXPECT_EQ(characters, U"aé号\U0001F69A\uFFFDz");
    EXPECT_EQ(CountCharacters(text), 6u);
    EXPECT_EQ(CountCharacters(""), 0u);
    EXPECT_EQ(CharacterSize(text, 1), 2u);
    const std::size_t offsets[] = {0, 1, 3, 6, 10, 11, 12, 12};
    for (std::size_t number = 0; number < std::size(offsets); ++number) {
        EXPECT_EQ(OffsetOfCharacter(text, number), offsets[number]) << number;
    }
}

TEST(Utf8, ValidityAndReplacement) {
    struct Case {
        std::string text;
        bool valid;
        std::string replaced;
    };
    const Case cases[] = {
        {"", true, ""},
        {"abc", true, "abc"},
        {"exactly16letters", true, "exactly16letters"},
        {"仓库", true, "仓库"},
        {"仓库A1号", true, "仓库A1号"},
        {"１２", true, "１２"},                          // full-width digits
        {"e\xCC\x81", true, "e\xCC\x81"},                // e with a combining accent
        {"é", true, "é"},                                // one character
        {"\xF0\x9F\x9A\x9A", true, "\xF0\x9F\x9A\x9A"},  // a lorry, beyond the first plane
        {"￥5", true, "￥5"},                            // full-width currency sign
        {"\xEF\xBF\xBD", true, "\xEF\xBF\xBD"},
        {"a\xFFz", false, "a\xEF\xBF\xBDz"},
        // 仓库 in code page 936; its middle bytes happen to be a combining mark.
        {"\xB2\xD6\xBF\xE2", false, "\xEF\xBF\xBD\xD6\xBF\xEF\xBF\xBD"},
        {"\xE4\xBB", false, "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // cut short
        {"\xC0\xAF", false, "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // overlong
        {"\xED\xA0\x80", false, "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},  // half of a surrogate pair
    };
    for (const Case& each : cases) {
        EXPECT_EQ(IsValidUtf8(each.text), each.valid) << each.text;
        EXPECT_EQ(ReplaceInvalidUtf8(each.text), each.replaced);
    }
}

TEST(Utf8, InvalidByteFoundAtEveryPosition) {
    for (std::size_t length = 1; length < 40; ++length) {
        for (std::size_t at = 0; at < length; ++at) {
            std::string text(length, 'x');
            text[at] = '\x80';
            EXPECT_FALSE(IsValidUtf8(text)) << at << " of " << length;
            EXPECT_EQ(AsciiPrefix(text), at) << at << " of " << length;
        }
    }
}

}  // namespace
}  // namespace kpTables::text
