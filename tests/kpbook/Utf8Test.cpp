#include "kpbook/Utf8.h"

#include <gtest/gtest.h>

namespace kpTables::kpbook {
namespace {

struct TextCase {
    std::string text;
    bool valid;
    std::string replaced;
    std::size_t width;
};

TEST(Utf8, ValidityReplacementAndWidth) {
    const TextCase cases[] = {
        {"", true, "", 0},
        {"abc", true, "abc", 3},
        {"exactly16letters", true, "exactly16letters", 16},
        {"仓库", true, "仓库", 4},
        {"仓库A1号", true, "仓库A1号", 8},
        {"１２", true, "１２", 4},                          // full-width digits
        {"e\xCC\x81", true, "e\xCC\x81", 1},                // e with a combining accent
        {"é", true, "é", 1},                                // one character
        {"\xF0\x9F\x9A\x9A", true, "\xF0\x9F\x9A\x9A", 2},  // a lorry, beyond the first plane
        {"￥5", true, "￥5", 3},                            // full-width currency sign
        {"a\xFFz", false, "a\xEF\xBF\xBDz", 3},
        // 仓库 in code page 936; its middle bytes happen to be a combining mark.
        {"\xB2\xD6\xBF\xE2", false, "\xEF\xBF\xBD\xD6\xBF\xEF\xBF\xBD", 2},
        {"\xE4\xBB", false, "\xEF\xBF\xBD\xEF\xBF\xBD", 2},                  // cut short
        {"\xC0\xAF", false, "\xEF\xBF\xBD\xEF\xBF\xBD", 2},                  // overlong
        {"\xED\xA0\x80", false, "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", 3},  // half of a surrogate pair
    };
    for (const auto& each : cases) {
        EXPECT_EQ(IsValidUtf8(each.text), each.valid) << each.text;
        EXPECT_EQ(ReplaceInvalidUtf8(each.text), each.replaced);
        EXPECT_EQ(DisplayWidth(each.text), each.width) << each.text;
    }
}

TEST(Utf8, InvalidByteFoundAtEveryPosition) {
    for (std::size_t length = 1; length < 40; ++length) {
        for (std::size_t at = 0; at < length; ++at) {
            std::string text(length, 'x');
            text[at] = '\x80';
            EXPECT_FALSE(IsValidUtf8(text)) << at << " of " << length;
        }
    }
}

TEST(Utf8, PrintableShowsControlCharacters) {
    struct Case {
        std::string text;
        std::string shown;
    };
    const Case cases[] = {
        {"plain 文字", "plain 文字"},
        {"a\nb", "a\\nb"},
        {"a\r\nb", "a\\r\\nb"},
        {"a\tb", "a\\tb"},
        {"\x1B[31m", "\\x1b[31m"},
        {std::string("a\0b", 3), "a\\x00b"},
        {"\x7F", "\\x7f"},
        {"\xC2\x9B", "\\x9b"},  // a control character of two bytes
        {"\xC2\xA0", "\xC2\xA0"},
        {"a\xFF", "a\xEF\xBF\xBD"},
    };
    for (const auto& each : cases) EXPECT_EQ(Printable(each.text), each.shown);
}

}  // namespace
}  // namespace kpTables::kpbook
