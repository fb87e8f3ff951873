// Walking UTF-8 text.
#include "kpTables/Utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace kpTables::test {
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
    }
}

TEST(Utf8, CountsUtf16Units) {
    EXPECT_EQ(Utf16Length(""), 0u);
    EXPECT_EQ(Utf16Length("aé号"), 3u);
    EXPECT_EQ(Utf16Length("\xEF\xBF\xBF"), 1u);
    EXPECT_EQ(Utf16Length("\xF0\x90\x80\x80"), 2u);
    EXPECT_EQ(Utf16Length("\xE5\x8F"), 2u);
}

}  // namespace
}  // namespace kpTables::test
