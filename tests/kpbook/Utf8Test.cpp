#include "kpbook/Utf8.h"

#include <gtest/gtest.h>

namespace kpTables::kpbook {
namespace {

TEST(Utf8, DisplayWidth) {
    struct Case {
        std::string text;
        std::size_t width;
    };
    const Case cases[] = {
        {"", 0},
        {"abc", 3},
        {"exactly16letters", 16},
        {"仓库", 4},
        {"仓库A1号", 8},
        {"１２", 4},              // full-width digits
        {"e\xCC\x81", 1},         // e with a combining accent
        {"é", 1},                 // one character
        {"\xF0\x9F\x9A\x9A", 2},  // a lorry, beyond the first plane
        {"￥5", 3},               // full-width currency sign
        {"a\xFFz", 3},
        // 仓库 in code page 936; its middle bytes happen to be a combining mark.
        {"\xB2\xD6\xBF\xE2", 2},
        {"\xE4\xBB", 2},      // cut short
        {"\xC0\xAF", 2},      // overlong
        {"\xED\xA0\x80", 3},  // half of a surrogate pair
    };
    for (const Case& each : cases) EXPECT_EQ(DisplayWidth(each.text), each.width) << each.text;
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
