#include "text/TextOrder.h"

#include <gtest/gtest.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "IcuOrder.h"

namespace kpTables::text {
namespace {

int Sign(int value) { return (value > 0) - (value < 0); }

std::string Utf8(char32_t character) {
    std::string text;
    AppendCharacter(text, character);
    return text;
}

std::string Utf8(std::u32string_view characters) {
    std::string text;
    for (const char32_t c : characters) AppendCharacter(text, c);
    return text;
}

bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

/// Every character of the planes in use, and some of the others.
std::vector<std::string> EveryCharacter() {
    constexpr char32_t kEndOfPlanesInUse = 0x40000;
    constexpr char32_t kTags = 0xE0000;
    constexpr char32_t kEndOfTags = 0xE1000;
    std::vector<std::string> characters;
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        const bool isInUse = c < kEndOfPlanesInUse || (c >= kTags && c < kEndOfTags);
        if ((isInUse || c % 101 == 0) && !IsSurrogate(c)) characters.push_back(Utf8(c));
    }
    return characters;
}

std::vector<std::uint64_t> WeightsOf(std::string_view text, std::size_t most) {
    std::vector<std::uint64_t> weights;
    AppendWeights(text, most, weights);
    return weights;
}

/// ICU agrees with the order of CompareTexts, which that of weights does not contradict, and only equal texts share a
/// hash.
void ExpectSortedAsIcu(std::vector<std::string> texts) {
    const IcuOrder icu;
    std::sort(texts.begin(), texts.end(),
              [](const std::string& left, const std::string& right) { return CompareTexts(left, right) < 0; });
    for (std::size_t i = 1; i < texts.size(); ++i) {
        ASSERT_EQ(Sign(CompareTexts(texts[i - 1], texts[i])), icu.Compare(texts[i - 1], texts[i]))
            << texts[i - 1] << '|' << texts[i];
        for (const std::size_t most : {std::size_t{1}, std::size_t{3}})
            ASSERT_LE(WeightsOf(texts[i - 1], most), WeightsOf(texts[i], most)) << texts[i - 1] << '|' << texts[i];
        ASSERT_EQ(HashOfText(texts[i - 1]) == HashOfText(texts[i]), CompareTexts(texts[i - 1], texts[i]) == 0)
            << texts[i - 1] << '|' << texts[i];
    }
}

TEST(TextOrder, AllPairsOfAsciiCharactersAsIcu) {
    const IcuOrder icu;
    for (int a = 0; a < 128; ++a) {
        for (int b = 0; b < 128; ++b) {
            const std::string left(1, static_cast<char>(a));
            const std::string right(1, static_cast<char>(b));
            ASSERT_EQ(Sign(CompareTexts(left, right)), icu.Compare(left, right)) << a << " and " << b;
        }
    }
}

TEST(TextOrder, EveryCharacterAsIcu) { ExpectSortedAsIcu(EveryCharacter()); }

TEST(TextOrder, AllPairsOfAsciiAndFullWidthCharactersAsIcu) {
    const IcuOrder icu;
    for (char32_t full = 0xFEFF; full <= 0xFF60; ++full) {
        for (int c = 0; c < 128; ++c) {
            const std::string left = Utf8(full);
            const std::string right(1, static_cast<char>(c));
            ASSERT_EQ(Sign(CompareTexts(left, right)), icu.Compare(left, right)) << left << " and " << c;
        }
    }
}

// Deviation: ICU reads 重庆, 沈阳 and 藏文 as names, and U+FDD0 and U+FDD1 before a letter as marks of an index.
bool IsContractedByIcuAlone(const std::string& text) {
    static const std::set<char32_t> kFirst = {U'重', U'沈', 0xF972, U'藏', 0xFDD0, 0xFDD1};
    return kFirst.count(DecodeUtf8(text).character) != 0;
}

TEST(TextOrder, EveryContractionAsIcu) {
    std::vector<std::string> texts;
    for (const std::string& text : IcuOrder().Contractions()) {
        if (IsContractedByIcuAlone(text)) continue;
        for (const char* before : {"", "a", "水"}) {
            for (const char* after : {"", "b", "水"}) texts.push_back(before + text + after);
        }
    }
    EXPECT_GT(texts.size(), 10000U);
    ExpectSortedAsIcu(texts);
}

TEST(TextOrder, ComposedAndDecomposedCharactersAreEqual) {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* normalizer = unorm2_getNFDInstance(&status);
    int decomposed = 0;
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        UChar units[32];
        const int size = unorm2_getDecomposition(normalizer, static_cast<UChar32>(c), units, 32, &status);
        if (size < 0) continue;
        ++decomposed;
        char text[128];
        int bytes = 0;
        u_strToUTF8(text, sizeof text, &bytes, units, size, &status);
        const std::string apart(text, static_cast<std::size_t>(bytes));
        ASSERT_EQ(CompareTexts(Utf8(c), apart), 0) << apart;
        ASSERT_EQ(HashOfText(Utf8(c)), HashOfText(apart)) << apart;
    }
    EXPECT_TRUE(U_SUCCESS(status));
    EXPECT_GT(decomposed, 13000);
}

/// Characters of which random texts are made.
struct Alphabet {
    const char* name;
    std::vector<std::pair<char32_t, char32_t>> ranges;  ///< first and last
};

const Alphabet kAlphabets[] = {
    // Few characters, so that texts are often equal but for case, ignored characters and blanks.
    {"Ascii",
     {{U'a', U'b'}, {U'A', U'B'}, {U'1', U'2'}, {U' ', U' '}, {U'-', U'.'}, {U'\t', U'\t'}, {1, 1}, {127, 127}}},
    {"Latin",
     {{U'A', U'z'}, {0xC0, 0x17F}, {0xB7, 0xB7}, {0x1E00, 0x1EFF}, {0x300, 0x304}, {0x308, 0x308}, {0x30C, 0x30C}}},
    {"Vowels",
     {{U'e', U'e'}, {U'u', U'u'}, {U'Ü', U'Ü'}, {0x300, 0x302}, {0x304, 0x304}, {0x308, 0x308}, {0x30C, 0x30C}}},
    {"GreekAndCyrillic",
     {{0x370, 0x3FF}, {0x400, 0x4FF}, {0x1F00, 0x1FFF}, {0x300, 0x301}, {0x306, 0x306}, {0x308, 0x308}}},
    {"Kana", {{0x3041, 0x3096}, {0x3099, 0x309F}, {0x30A0, 0x30FF}, {0xFF61, 0xFF9F}, {0x32D0, 0x32FE}}},
    {"VoicedKana", {{0x304B, 0x3052}, {0x30AB, 0x30B2}, {0xFF76, 0xFF79}, {0x3099, 0x309A}, {0xFF9E, 0xFF9F}}},
    {"Hangul",
     {{0xAC00, 0xD7A3}, {0x1100, 0x11FF}, {0xAC00, 0xAC40}, {0x1100, 0x1103}, {0x1161, 0x1164}, {0x11A8, 0x11AB}}},
    {"Symbols", {{0x20, 0x40}, {0xA0, 0xBF}, {0x2010, 0x2BFF}, {0x3000, 0x303F}, {0xFF00, 0xFFEF}, {0x1F300, 0x1F6FF}}},
    {"Enclosed",
     {{U'0', U'9'}, {0x2460, 0x24FF}, {0x3200, 0x33FF}, {0xFF10, 0xFF19}, {0x2150, 0x218B}, {0x1F100, 0x1F1FF}}},
    {"Chinese",
     {{0x4E00, 0x9FFF}, {0x3400, 0x4DBF}, {0xF900, 0xFAFF}, {0x20000, 0x323AF}, {0x2E80, 0x2FDF}, {0x3105, 0x312F}}},
    {"CodePage", {{0x4E00, 0x9FA5}, {0xFF01, 0xFF5E}, {U' ', U'~'}, {0x3000, 0x3000}, {0x4E00, 0x4E03}}},
    {"Private",
     {{0xE000, 0xE010}, {0x378, 0x37A}, {U'a', U'b'}, {0xFFFD, 0xFFFF}, {0x10FFFC, 0x10FFFF}, {U'水', U'水'}}},
};

char32_t RandomCharacter(const Alphabet& alphabet, std::mt19937& random) {
    const auto [first, last] = alphabet.ranges[random() % alphabet.ranges.size()];
    return first + static_cast<char32_t>(random() % (last - first + 1));
}

std::u32string RandomText(const Alphabet& alphabet, std::mt19937& random) {
    std::u32string text(random() % 6, U' ');
    for (char32_t& c : text) c = RandomCharacter(alphabet, random);
    return text;
}

/// Often a text with one character changed.
std::u32string AnotherText(std::u32string text, const Alphabet& alphabet, std::mt19937& random) {
    if (random() % 3 == 0) return RandomText(alphabet, random);
    const std::size_t at = random() % (text.size() + 1);
    if (at == text.size() || random() % 2 == 0) {
        text.insert(at, 1, RandomCharacter(alphabet, random));
    } else {
        text[at] = RandomCharacter(alphabet, random);
    }
    return text;
}

class RandomTexts : public testing::TestWithParam<Alphabet> {
protected:
    /// Calls CHECK with pairs of texts and their characters.
    template <typename Check>
    void ForPairs(Check check) {
        std::mt19937 random(20040307);
        for (int i = 0; i < 100000 && !HasFatalFailure(); ++i) {
            const std::u32string left = RandomText(GetParam(), random);
            const std::u32string right = AnotherText(left, GetParam(), random);
            check(Utf8(left), Utf8(right));
        }
    }
};

TEST_P(RandomTexts, AreOrderedAsIcu) {
    const IcuOrder icu;
    ForPairs([&](const std::string& left, const std::string& right) {
        ASSERT_EQ(Sign(CompareTexts(left, right)), icu.Compare(left, right)) << left << '|' << right;
        ASSERT_EQ(Sign(CompareTexts(right, left)), icu.Compare(right, left)) << left << '|' << right;
    });
}

TEST_P(RandomTexts, HaveOneHashWhenEqual) {
    ForPairs([&](const std::string& left, const std::string& right) {
        ASSERT_EQ(HashOfText(left) == HashOfText(right), CompareTexts(left, right) == 0) << left << '|' << right;
    });
}

INSTANTIATE_TEST_SUITE_P(Of, RandomTexts, testing::ValuesIn(kAlphabets),
                         [](const auto& info) { return info.param.name; });

TEST(TextOrder, WeightsOfAccentsAreNotTakenForCharacters) {
    EXPECT_NE(HashOfText("\u00E9"), HashOfText("e\t"));
    EXPECT_EQ(HashOfText("\u00E9"), HashOfText("\u00C9 "));
}

TEST(TextOrder, RandomMixedTextsAsIcu) {
    const IcuOrder icu;
    std::mt19937 random(20040308);
    const std::vector<std::string> characters = {"a",  "A",      "1",  " ",  "-",  "\x01", "水", "泥",
                                                 "阿", "龥",     "一", "Ａ", "（", "　",   "１", "（",
                                                 "(",  "\u0301", "Φ",  "㐀", "𠀀", "\xE6"};
    const auto text = [&] {
        std::string out;
        for (auto left = random() % 6; left > 0; --left) out += characters[random() % characters.size()];
        return out;
    };
    for (int i = 0; i < 200000; ++i) {
        const std::string left = text();
        const std::string right = text();
        ASSERT_EQ(Sign(CompareTexts(left, right)), icu.Compare(left, right)) << left << '|' << right;
    }
}

/// Texts that this order treats as equal or places differently from ICU.
struct Deviation {
    const char* name;
    std::string left;
    std::string right;
    int ours;
    int icu;
};

class Deviations : public testing::TestWithParam<Deviation> {};

TEST_P(Deviations, AreTheseAlone) {
    const auto& [name, left, right, ours, theirs] = GetParam();
    EXPECT_EQ(Sign(CompareTexts(left, right)), ours);
    EXPECT_EQ(IcuOrder().Compare(left, right), theirs);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Deviations,
    testing::Values(
        // Characters are compared one by one, as both original databases do: 重 is zhong, 藏 is cang.
        Deviation{"NameOfChongqing", "重庆", "中国", 1, -1}, Deviation{"NameOfShenyang", "沈阳", "沈", 1, -1},
        Deviation{"NameOfShenyangCompatible", "\uF972阳", "\uF972", 1, -1},
        Deviation{"WordZangwen", "藏文", "曾", -1, 1},
        // U+FDD0 and U+FDD1 are no characters; ICU marks the headings of an index with them.
        Deviation{"IndexMark", "\uFDD0A", "\uFDD0", 1, -1}, Deviation{"OtherIndexMark", "\uFDD1ㄅ", "\uFDD1", 1, -1},
        // A mark counts as a tone only next to its vowel, or in a letter that Unicode has composed.
        Deviation{"ToneBehindAnotherMark", "a\u0316\u0301", "a\u0316", 1, -1},
        // Every invalid byte is a replacement character; ICU treats a truncated character as one.
        Deviation{"BeginningOfACharacter", "\xE5\xBC", "\uFFFD", 1, 0}),
    [](const auto& info) { return info.param.name; });

struct Order {
    const char* left;
    const char* right;
    int expected;
};

void PrintTo(const Order& order, std::ostream* out) { *out << order.left << '|' << order.right; }

class TextPairs : public testing::TestWithParam<Order> {};

TEST_P(TextPairs, HoldBothWays) {
    const auto [left, right, expected] = GetParam();
    EXPECT_EQ(Sign(CompareTexts(left, right)), expected);
    EXPECT_EQ(Sign(CompareTexts(right, left)), -expected);
}

INSTANTIATE_TEST_SUITE_P(Table, TextPairs,
                         testing::Values(Order{"abc", "ABC", 0},          // case
                                         Order{"abc", "abc  ", 0},        // trailing blanks
                                         Order{"张三", "张三   ", 0},     //
                                         Order{" a", "a", -1},            // leading ones count
                                         Order{"", "   ", 0},             //
                                         Order{"", "a", -1},              //
                                         Order{"2", "10", 1},             // text, not numbers
                                         Order{"Z", "阿", -1},            // letters before Chinese
                                         Order{"9", "阿", -1},            //
                                         Order{"阿", "波", -1},           // a, bo
                                         Order{"波", "重庆", -1},         // bo, zhong
                                         Order{"张三", "李四", 1},        // zhang, li
                                         Order{"北京", "上海", -1},       // bei, shang
                                         Order{"水泥", "水泥A", -1},      // the shorter first
                                         Order{"水泥a", "水泥A ", 0},     //
                                         Order{"水泥 甲", "水泥甲", -1},  // a blank inside counts
                                         Order{"Ａ", "a", 0},             // full width as half width
                                         Order{"①", "1", 0},              // a circled digit as the digit
                                         Order{"ガ", "が", 0},            // kana of both kinds
                                         Order{"resume", "résumé", 1},    // tones of pinyin before none
                                         Order{"Zoe", "Zoë", -1},         // other accents after none
                                         Order{"Zoë", "Zof", -1},         // accents after letters
                                         Order{"Ф", "水", -1},            //
                                         Order{"水", "\uE000", -1}));     // what is not assigned last

TEST(TextOrder, AnyBytesKeepATotalOrder) {
    std::mt19937 random(7);
    std::vector<std::string> texts = {"",         " ",        "a",     "A ",     "张",      "张 ",           "\xC3",
                                      "\xE5\xBC", "\xFF\xFE", "a\xFF", "中\x01", "e\u0301", "e\u0316\u0301", "é",
                                      "E",        "l·",       "l",     "·"};
    for (int i = 0; i < 60; ++i) {
        std::string text(random() % 5, ' ');
        for (char& c : text) c = static_cast<char>(random() % 256);
        texts.push_back(text);
    }
    for (const auto& a : texts) {
        EXPECT_EQ(CompareTexts(a, a), 0);
        for (const auto& b : texts) {
            const int ab = Sign(CompareTexts(a, b));
            ASSERT_EQ(ab, -Sign(CompareTexts(b, a)));
            ASSERT_EQ(ab == 0, HashOfText(a) == HashOfText(b));
            for (const auto& c : texts) {
                if (ab <= 0 && CompareTexts(b, c) <= 0) {
                    ASSERT_LE(CompareTexts(a, c), 0) << a << '|' << b << '|' << c;
                }
                if (ab == 0) {
                    ASSERT_EQ(Sign(CompareTexts(a, c)), Sign(CompareTexts(b, c)));
                }
            }
        }
    }
}

TEST(TextOrder, WeightsDecideUnlessTheyAreEqual) {
    EXPECT_LT(WeightsOf("水泥", 4), WeightsOf("水泥A", 4));
    EXPECT_LT(WeightsOf("abc9", 2), WeightsOf("abca", 2));
    EXPECT_EQ(WeightsOf("abc9", 1), WeightsOf("ＡＢＣa", 1));
    EXPECT_EQ(WeightsOf("e", 1), WeightsOf("é", 1));
    EXPECT_LT(WeightsOf("", 1), WeightsOf("a", 1));
    EXPECT_TRUE(WeightsOf("   ", 1).empty());
    EXPECT_TRUE(WeightsOf("abc", 0).empty());
    EXPECT_EQ(WeightsOf(std::string(1000, 'x'), 16).size(), 16U);
}

TEST(TextOrder, ThreadsShareIt) {
    std::vector<std::thread> threads;
    std::vector<int> results(8);
    for (int& result : results) {
        threads.emplace_back([&result] {
            for (int i = 0; i < 1000; ++i) result += Sign(CompareTexts("张三é", "李四é"));
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const int result : results) EXPECT_EQ(result, 1000);
}

}  // namespace
}  // namespace kpTables::text
