#include "text/Like.h"

#include <gtest/gtest.h>

#include <string>

namespace kpTables::text {
namespace {

struct Case {
    const char* text;
    const char* pattern;
    bool matches;
};

TEST(Like, TakesTheSignsOfItsRules) {
    const LikeRules server{.outside = "^"};
    EXPECT_TRUE(Like("!", "[!b]", server));
    EXPECT_FALSE(Like("c", "[!b]", server));
    EXPECT_TRUE(Like("c", "[^b]", server));
    const LikeRules escaped{.escape = "!"};
    EXPECT_TRUE(Like("50%", "50!%", escaped));
    EXPECT_FALSE(Like("500", "50!%", escaped));
    EXPECT_TRUE(Like("a_b", "a!_%", escaped));
    EXPECT_TRUE(Like("a!", "a!!", escaped));
    EXPECT_TRUE(Like("a!", "a!", escaped));
    EXPECT_FALSE(Like("abc", "a%", {.escape = "%"}));
}

TEST(Like, PatternsOfSql) {
    const Case cases[] = {
        {"水泥砂浆", "水%", true},
        {"水泥砂浆", "_泥%", true},
        {"ABC", "a_c", true},
        {"ABC", "a_", false},
        {"", "%", true},
        {"", "_", false},
        {"b1", "[a-c]1", true},
        {"d1", "[a-c]1", false},
        {"d1", "[!a-c]1", true},
        {"d1", "[^a-c]1", true},
        {"B1", "[a-c]1", true},
        {"a%b", "a[%]b", true},
        {"axb", "a[%]b", false},
        {"a[b", "a[b", true},
        {"xaxbxc", "%a%b%c", true},
        {"xaxbx", "%a%b%c", false},
        {"a", "a%%", true},
        {"É", "é", true},
        {"水泥", "水_", true},
        {"水泥", "水__", false},
        {"", "", true},
        {"a", "", false},
        {"a*b", "a*b", true},
    };
    for (const Case& c : cases) EXPECT_EQ(Like(c.text, c.pattern), c.matches) << c.text << ' ' << c.pattern;
}

TEST(Like, PatternsOfCriteria) {
    const Case cases[] = {
        {"水泥砂浆", "水*", true},  {"水泥砂浆", "*泥%", true}, {"ABC", "a*C", true},
        {"ABC", "a_c", false},      {"a_c", "A_C", true},       {"", "*", true},
        {"xaxbxc", "%a*b%c", true}, {"xaxbx", "*a%b*c", false}, {"É", "é", false},
        {"[a]", "[a]", true},
    };
    for (const Case& c : cases) EXPECT_EQ(LikeInCriteria(c.text, c.pattern), c.matches) << c.text << ' ' << c.pattern;
}

TEST(Like, ManyRunsTakeNoExponentialTime) {
    std::string pattern;
    for (int i = 0; i < 200; ++i) pattern += "%a";
    EXPECT_FALSE(Like(std::string(5000, 'a'), pattern + "b"));
    EXPECT_FALSE(LikeInCriteria(std::string(5000, 'a'), pattern + "b"));
}

}  // namespace
}  // namespace kpTables::text
