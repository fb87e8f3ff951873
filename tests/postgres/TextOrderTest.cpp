// The server's order of texts is the book's own.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "kpTables/Book.h"
#include "kpTables/Convert.h"
#include "sqlite/TestBook.h"
#include "text/TextOrder.h"
#include "text/Utf8.h"

namespace kpTables {
namespace {

/// Texts of a few characters each: letters in both cases and widths, digits, signs, accents, blanks and Chinese.
std::vector<std::string> RandomTexts(std::size_t count) {
    constexpr std::string_view kCharacters[] = {"a",  "A",  "Ａ", "b",  "Z",  "é",  "e",  "1",  "10",
                                                "２", " ",  "-",  ".",  "#",  "Φ",  "中", "心", "仓",
                                                "库", "水", "泥", "砂", "重", "长", "〇", "、"};
    std::mt19937 random(7);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    std::vector<std::string> texts;
    while (texts.size() < count) {
        std::string text;
        for (std::size_t i = below(5); i > 0; --i) text += kCharacters[below(std::size(kCharacters))];
        for (int i = 0; i < 2; ++i) {
            if (below(3) == 0) text::AppendCharacter(text, static_cast<char32_t>(0x4E00 + below(0x5000)));
        }
        texts.push_back(text);
    }
    return texts;
}

TEST(TextOrderOnServer, SortsAsTheBook) {
    ASSERT_TRUE(std::getenv("KPTABLES_SERVER")) << "run it beside a server: tests/postgres/private_server.py";
    const BookPtr book = test::NewBook();
    book->Execute("Create Table T (N LONG PRIMARY KEY, S TEXT(50))");
    const auto texts = RandomTexts(3000);
    book->BeginTrans();
    const auto appender = book->AppendTo("T", {"N", "S"});
    for (std::size_t i = 0; i < texts.size(); ++i) {
        appender->Append({static_cast<std::int32_t>(i), Variant(texts[i])});
    }
    book->CommitTrans();
    // Without TOP the client would sort.
    const auto sorted = book->Execute("Select Top 3000 S From T Order by S, N");
    ASSERT_EQ(sorted->RecordCount(), static_cast<std::int32_t>(texts.size()));
    auto expected = texts;
    std::ranges::stable_sort(expected,
                             [](const std::string& a, const std::string& b) { return text::CompareTexts(a, b) < 0; });
    std::size_t different = 0;
    for (std::size_t row = 0; !sorted->Eof(); sorted->MoveNext(), ++row) {
        const std::string text = Text(sorted->GetValue(0));
        if (text == expected[row]) continue;
        if (different++ < 10)
            ADD_FAILURE() << "row " << row << ": '" << text << "' instead of '" << expected[row] << "'";
    }
    EXPECT_EQ(different, 0U);
}

TEST(TextOrderOnServer, FindsEqualTexts) {
    const BookPtr book = test::NewBook();
    book->Execute("Create Table T (S TEXT(50))");
    book->Execute("Insert Into T Values ('Abc  ')");
    for (const char* same : {"abc", "ABC", "ａｂｃ", "Abc "}) {
        EXPECT_EQ(test::ValueOf(*book, std::string("Select Count(*) From T Where S='") + same + "'"), "1") << same;
    }
    EXPECT_EQ(test::ValueOf(*book, "Select Count(*) From T Where S=' abc' Or S='ab' Or S='äbc'"), "0");
    EXPECT_EQ(test::ValueOf(*book, "Select Len(S) From T"), "5");
}

}  // namespace
}  // namespace kpTables
