#include "text/FoldedText.h"

#include <gtest/gtest.h>

namespace kpTables::text {
namespace {

TEST(FoldedText, IgnoresCaseAndTrailingBlanks) {
    const std::pair<std::string_view, std::string_view> equal[] = {
        {"", "  "}, {"abc", "ABC"}, {"abc  ", "Abc"}, {"水泥A", "水泥a "}};
    for (const auto& [left, right] : equal) {
        EXPECT_EQ(CompareFolded(left, right), std::strong_ordering::equal) << left;
        EXPECT_EQ(HashFolded(left), HashFolded(right)) << left;
    }
}

TEST(FoldedText, OrdersByCodePoint) {
    const std::string_view ascending[] = {"", " a", "0", "_", "A", "ab", "B", "z", "é", "水", "水泥", "砂"};
    for (std::size_t i = 0; i < std::size(ascending); ++i) {
        for (std::size_t j = 0; j < std::size(ascending); ++j) {
            EXPECT_EQ(CompareFolded(ascending[i], ascending[j]), i <=> j) << ascending[i] << ' ' << ascending[j];
        }
    }
}

TEST(FoldedText, TrailingBlanks) {
    EXPECT_EQ(WithoutTrailingBlanks(" a b  "), " a b");
    EXPECT_EQ(WithoutTrailingBlanks("   "), "");
    EXPECT_EQ(WithoutTrailingBlanks("a\t"), "a\t");
}

}  // namespace
}  // namespace kpTables::text
