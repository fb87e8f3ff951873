#include "kpbook/input/TextDecoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "kpbook/Exit.h"

namespace kpTables::kpbook::input {
namespace {

TextDecoder::Source PiecesOf(std::string text, std::size_t piece) {
    return [text = std::move(text), piece, at = std::size_t{0}](char* buffer, std::size_t size) mutable {
        const auto count = std::min({piece, size, text.size() - at});
        std::memcpy(buffer, text.data() + at, count);
        at += count;
        return count;
    };
}

struct Decoded {
    std::string text;
    std::string encoding;
    bool operator==(const Decoded&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Decoded& decoded) {
    return out << decoded.encoding << ": " << decoded.text;
}

Decoded Decode(const std::string& bytes, const std::string& encoding = "", std::size_t piece = 1 << 20) {
    TextDecoder decoder(PiecesOf(bytes, piece), encoding);
    std::string text;
    char buffer[7];
    while (const auto count = decoder.Read(buffer, sizeof buffer)) text.append(buffer, count);
    return {text, decoder.Encoding()};
}

// 仓库 and 东库, as GBK writes them.
constexpr const char* kGbkStore = "\xB2\xD6\xBF\xE2";
constexpr const char* kGbkEast = "\xB6\xAB\xBF\xE2";

TEST(TextDecoder, Recognises) {
    const std::string gbk = std::string(kGbkStore) + "\n" + kGbkEast + "\n";
    for (const std::size_t piece : {1, 3, 1 << 20}) {
        EXPECT_EQ(Decode("", "", piece), (Decoded{"", "UTF-8"}));
        EXPECT_EQ(Decode("a,b\n1,2\n", "", piece), (Decoded{"a,b\n1,2\n", "UTF-8"}));
        EXPECT_EQ(Decode("仓库\n东库\n", "", piece), (Decoded{"仓库\n东库\n", "UTF-8"}));
        EXPECT_EQ(Decode("\xEF\xBB\xBF仓库\n", "", piece), (Decoded{"仓库\n", "UTF-8"}));
        EXPECT_EQ(Decode(gbk, "", piece), (Decoded{"仓库\n东库\n", "GB18030"}));
        EXPECT_EQ(Decode("a\n1\n" + gbk, "", piece), (Decoded{"a\n1\n仓库\n东库\n", "GB18030"}));
        EXPECT_EQ(Decode({"\xFF\xFE\xD3\x4E\x93\x5E\x0A\x00", 8}, "", piece), (Decoded{"仓库\n", "UTF-16LE"}));
        EXPECT_EQ(Decode({"\xFE\xFF\x4E\xD3\x5E\x93\x00\x0A", 8}, "", piece), (Decoded{"仓库\n", "UTF-16BE"}));
    }
}

// Few broken lines do not make UTF-8 another encoding, in which they would read as wrong characters.
TEST(TextDecoder, BrokenUtf8StaysUtf8) {
    const std::string broken = "仓库\n" + std::string(kGbkEast) + "\n";
    EXPECT_EQ(Decode(broken), (Decoded{broken, "UTF-8"}));
}

TEST(TextDecoder, TakesTheNamedEncoding) {
    EXPECT_EQ(Decode(kGbkStore, "gbk"), (Decoded{"仓库", "gbk"}));
    EXPECT_EQ(Decode("\xAD\xDC", "BIG5"), (Decoded{"倉", "BIG5"}));
    EXPECT_EQ(Decode(kGbkStore, "utf-8"), (Decoded{kGbkStore, "utf-8"}));
    EXPECT_EQ(Decode({"\xD3\x4E", 2}, "UTF-16LE"), (Decoded{"仓", "UTF-16LE"}));
    EXPECT_THROW(Decode("a", "no such"), UsageError);
    EXPECT_THROW(Decode("a", "UTF-16//IGNORE"), UsageError);
}

TEST(TextDecoder, TakesCharactersOfFourBytes) {
    EXPECT_EQ(Decode("\x81\x30\x81\x30", "GB18030"), (Decoded{"\xC2\x80", "GB18030"}));
}

TEST(TextDecoder, MarksWhatIsNoText) {
    const std::string text = Decode(std::string(kGbkStore) + "\xFF,a\n" + kGbkEast + "\xB2", "GB18030").text;
    EXPECT_EQ(text, "仓库\xFF,a\n东库\xFF");
    // Half of a surrogate pair, then a letter; an odd byte at the end.
    EXPECT_EQ(Decode({"\x00\xD8\x61\x00\x62", 5}, "UTF-16LE").text,
              "\xFF"
              "a\xFF");
}

TEST(TextDecoder, LongTexts) {
    std::string gbk = "a\n";
    std::string utf8 = "a\n";
    for (int i = 0; i < 100'000; ++i) {
        gbk += kGbkStore + std::string(static_cast<std::size_t>(i % 3), 'x') + "\n";
        utf8 += "仓库" + std::string(static_cast<std::size_t>(i % 3), 'x') + "\n";
    }
    EXPECT_TRUE(Decode(gbk).text == utf8);
    EXPECT_TRUE(Decode(utf8).text == utf8);
}

}  // namespace
}  // namespace kpTables::kpbook::input
