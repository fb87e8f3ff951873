// The order of text in a book.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unicode/ucol.h>

#include <algorithm>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "TestBook.h"
#include "engines/sqlite/Collation.h"
#include "engines/sqlite/Database.h"
#include "kpTables/MemoryRecordset.h"

namespace kpTables::sqlite {
namespace {

int Sign(int value) { return (value > 0) - (value < 0); }

/// ICU's own answer, with the settings that the order of a book has.
class Reference {
public:
    Reference() {
        UErrorCode status = U_ZERO_ERROR;
        collator_ = ucol_open("zh-u-co-pinyin", &status);
        ucol_setStrength(collator_, UCOL_SECONDARY);
        const std::int32_t none[] = {UCOL_REORDER_CODE_NONE};
        ucol_setReorderCodes(collator_, none, 1, &status);
        EXPECT_TRUE(U_SUCCESS(status));
    }
    ~Reference() { ucol_close(collator_); }

    int Compare(std::string left, std::string right) const {
        left.erase(left.find_last_not_of(' ') + 1);
        right.erase(right.find_last_not_of(' ') + 1);
        UErrorCode status = U_ZERO_ERROR;
        return ucol_strcollUTF8(collator_, left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), &status);
    }

private:
    UCollator* collator_;
};

TEST(Collation, AllPairsOfAsciiCharactersAsIcu) {
    const Reference icu;
    for (int a = 0; a < 128; ++a) {
        for (int b = 0; b < 128; ++b) {
            const std::string left(1, static_cast<char>(a));
            const std::string right(1, static_cast<char>(b));
            ASSERT_EQ(Sign(CompareBookText(left, right)), Sign(icu.Compare(left, right))) << a << " and " << b;
        }
    }
}

TEST(Collation, RandomAsciiTextsAsIcu) {
    const Reference icu;
    std::mt19937 random(20040307);
    // Few characters, so that texts are often equal but for case, ignored characters and blanks.
    const std::string characters = "aAbB12 -.\t\x01\x7f";
    const auto text = [&] {
        std::string out(random() % 6, ' ');
        for (char& c : out) c = characters[random() % characters.size()];
        return out;
    };
    for (int i = 0; i < 200000; ++i) {
        const std::string left = text();
        const std::string right = text();
        ASSERT_EQ(Sign(CompareBookText(left, right)), Sign(icu.Compare(left, right))) << left << '|' << right;
    }
}

std::string Utf8(char16_t character) {
    return {static_cast<char>(0xE0 | character >> 12), static_cast<char>(0x80 | (character >> 6 & 0x3F)),
            static_cast<char>(0x80 | (character & 0x3F))};
}

TEST(Collation, AllChineseCharactersOfTheCodePageAsIcu) {
    const Reference icu;
    std::vector<std::string> characters;
    for (char16_t c = 0x4E00; c <= 0x9FA5; ++c) characters.push_back(Utf8(c));
    std::sort(characters.begin(), characters.end(),
              [](const auto& left, const auto& right) { return CompareBookText(left, right) < 0; });
    for (std::size_t i = 1; i < characters.size(); ++i) {
        ASSERT_LT(icu.Compare(characters[i - 1], characters[i]), 0) << characters[i - 1] << characters[i];
    }
}

TEST(Collation, AllPairsOfAsciiAndFullWidthCharactersAsIcu) {
    const Reference icu;
    for (char16_t full = 0xFEFF; full <= 0xFF60; ++full) {
        for (int c = 0; c < 128; ++c) {
            const std::string left = Utf8(full);
            const std::string right(1, static_cast<char>(c));
            ASSERT_EQ(Sign(CompareBookText(left, right)), Sign(icu.Compare(left, right))) << left << " and " << c;
        }
    }
}

TEST(Collation, RandomMixedTextsAsIcu) {
    const Reference icu;
    std::mt19937 random(20040308);
    // The last ones only ICU can compare: an accent, a Greek letter, characters of other blocks, no character at all.
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
        ASSERT_EQ(Sign(CompareBookText(left, right)), Sign(icu.Compare(left, right))) << left << '|' << right;
    }
}

TEST(Collation, EqualTextsHaveOneKey) {
    std::mt19937 random(20040309);
    const std::vector<std::string> characters = {"a", "A", "Ａ", "1", "１", "①", " ", "\x01", "水", "é"};
    const auto text = [&] {
        std::string out;
        for (auto left = random() % 4; left > 0; --left) out += characters[random() % characters.size()];
        return out;
    };
    int equal = 0;
    for (int i = 0; i < 200000; ++i) {
        const std::string left = text();
        const std::string right = text();
        const auto key = kBookTexts.key(left);
        const auto other = kBookTexts.key(right);
        if (!key || !other) continue;
        const bool same = kBookTexts.compare(left, right) == 0;
        ASSERT_EQ(*key == *other, same) << left << '|' << right;
        equal += same;
    }
    EXPECT_GT(equal, 1000);
    EXPECT_FALSE(kBookTexts.key("①")) << "is equal to 1";
}

struct Order {
    const char* left;
    const char* right;
    int expected;
};

void PrintTo(const Order& order, std::ostream* out) { *out << order.left << '|' << order.right; }

class CollationOrder : public testing::TestWithParam<Order> {};

TEST_P(CollationOrder, HoldsBothWays) {
    const auto [left, right, expected] = GetParam();
    EXPECT_EQ(Sign(CompareBookText(left, right)), expected);
    EXPECT_EQ(Sign(CompareBookText(right, left)), -expected);
}

INSTANTIATE_TEST_SUITE_P(Table, CollationOrder,
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
                                         Order{"波", "重庆", -1},         // bo, chong
                                         Order{"张三", "李四", 1},        // zhang, li
                                         Order{"北京", "上海", -1},       // bei, shang
                                         Order{"水泥", "水泥A", -1},      // the shorter first
                                         Order{"水泥a", "水泥A ", 0},     //
                                         Order{"水泥 甲", "水泥甲", -1},  // a blank inside counts
                                         Order{"Ａ", "a", 0}));           // full width as half width

TEST(Collation, AnyBytesKeepATotalOrder) {
    std::mt19937 random(7);
    std::vector<std::string> texts = {"",     " ",        "a",        "A ",    "张",    "张 ",
                                      "\xC3", "\xE5\xBC", "\xFF\xFE", "a\xFF", "中\x01"};
    for (int i = 0; i < 60; ++i) {
        std::string text(random() % 5, ' ');
        for (char& c : text) c = static_cast<char>(random() % 256);
        texts.push_back(text);
    }
    for (const auto& a : texts) {
        EXPECT_EQ(CompareBookText(a, a), 0);
        for (const auto& b : texts) {
            const int ab = Sign(CompareBookText(a, b));
            ASSERT_EQ(ab, -Sign(CompareBookText(b, a)));
            for (const auto& c : texts) {
                if (ab <= 0 && CompareBookText(b, c) <= 0) {
                    ASSERT_LE(CompareBookText(a, c), 0) << a << '|' << b << '|' << c;
                }
            }
        }
    }
}

TEST(Collation, ABookOfAnotherVersionGetsItsIndexesAnew) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.File("book");
    {
        const auto book = CreateBook(path);
        for (const char* name : {"张三", "李四", "阿大"}) {
            book->Execute(std::string("Insert Into 仓库设置 (仓库名称) Values ('").append(name).append("')"));
        }
    }
    {
        // Another version's order, by which the index is made.
        const Database other(path, SQLITE_OPEN_READWRITE);
        const auto backward = [](void*, int leftSize, const void* left, int rightSize, const void* right) {
            return CompareBookText({static_cast<const char*>(right), static_cast<std::size_t>(rightSize)},
                                   {static_cast<const char*>(left), static_cast<std::size_t>(leftSize)});
        };
        ASSERT_EQ(sqlite3_create_collation(other.Get(), "KPTEXT", SQLITE_UTF8, nullptr, backward), SQLITE_OK);
        other.Run("REINDEX KPTEXT");
        other.Run("UPDATE kp_collation SET version = '1.0'");
    }
    const auto book = OpenBook(path);
    EXPECT_EQ(test::RowsOf(*book, "Select 仓库名称 From 仓库设置 Order By 仓库名称"), "阿大 / 李四 / 张三");
    EXPECT_EQ(test::ValueOf(*book, "Select dpID From 仓库设置 Where 仓库名称='张三'"), "1");
    const Database check(path, SQLITE_OPEN_READONLY);
    EXPECT_EQ(check.IntegerOf("SELECT COUNT(*) FROM kp_collation WHERE version = '1.0'"), 0);
    for (const TableInfo& table : book->Tables()) EXPECT_NE(table.name, "kp_collation");
}

TEST(Collation, ThreadsShareOneCollator) {
    std::vector<std::thread> threads;
    std::vector<int> results(8);
    for (int& result : results) {
        threads.emplace_back([&result] {
            for (int i = 0; i < 1000; ++i) result += Sign(CompareBookText("张三é", "李四é"));
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const int result : results) EXPECT_EQ(result, 1000);
}

}  // namespace
}  // namespace kpTables::sqlite
