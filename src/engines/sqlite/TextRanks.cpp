#include "TextRanks.h"

#include <unicode/uvernum.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "PinyinOrderTable.h"

namespace kpTables::sqlite {

namespace {

/// The order of Chinese characters is revised between versions.
constexpr bool kIsOrderOfIcu = U_ICU_VERSION_MAJOR_NUM == 72;

// Characters that are not here are ignored.
constexpr std::string_view kAsciiOrder =
    "\t\n\v\f\r _-,;:!?.'\"()[]{}@*/\\&#%`^+<=>|~$0123456789abcdefghijklmnopqrstuvwxyz";

constexpr std::array<std::uint8_t, 128> AsciiRanks() {
    std::array<std::uint8_t, 128> ranks{};
    std::uint8_t rank = 0;
    for (const char c : kAsciiOrder) {
        ranks[static_cast<unsigned char>(c)] = ++rank;
        if (c >= 'a' && c <= 'z') ranks[static_cast<unsigned char>(c - 'a' + 'A')] = rank;
    }
    return ranks;
}
constexpr auto kAsciiRanks = AsciiRanks();

constexpr char32_t kFirstChinese = 0x4E00;

/// Chinese characters come after letters.
constexpr std::array<std::uint16_t, kPinyinOrder.size()> ChineseRanks() {
    std::array<std::uint16_t, kPinyinOrder.size()> ranks{};
    std::uint16_t rank = kAsciiRanks.size();
    for (const char16_t c : kPinyinOrder) ranks[c - kFirstChinese] = rank++;
    return ranks;
}
constexpr auto kChineseRanks = ChineseRanks();

constexpr char32_t kIdeographicBlank = 0x3000;
constexpr char32_t kFirstFullWidth = 0xFF01;
constexpr char32_t kLastFullWidth = 0xFF5E;

constexpr int kIgnored = 0;
constexpr int kUnranked = -1;

int RankOf(char32_t character) noexcept {
    if (character - kFirstChinese < kChineseRanks.size()) return kChineseRanks[character - kFirstChinese];
    if (character == kIdeographicBlank) return kAsciiRanks[' '];
    if (character < kFirstFullWidth || character > kLastFullWidth) return kUnranked;
    return kAsciiRanks[character - kFirstFullWidth + '!'];
}

/// Of the character at a place in the text, behind which the place is moved. All that is ranked beyond ASCII has three
/// bytes.
int TakeRank(std::string_view text, std::size_t& at) noexcept {
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) {
        ++at;
        return kAsciiRanks[lead];
    }
    if ((lead & 0xF0) != 0xE0 || text.size() - at < 3) return kUnranked;
    const unsigned char second = byte(at + 1);
    const unsigned char third = byte(at + 2);
    if ((second & 0xC0) != 0x80 || (third & 0xC0) != 0x80) return kUnranked;
    at += 3;
    return RankOf((lead & 0x0FU) << 12 | (second & 0x3FU) << 6 | (third & 0x3FU));
}

/// 0 at the end.
int NextRank(std::string_view text, std::size_t& at) noexcept {
    while (at < text.size()) {
        if (const int rank = TakeRank(text, at); rank != kIgnored) return rank;
    }
    return 0;
}

std::size_t AsciiPrefix(std::string_view text) noexcept {
    std::size_t at = 0;
    for (std::uint64_t eight; at + sizeof eight <= text.size(); at += sizeof eight) {
        std::memcpy(&eight, text.data() + at, sizeof eight);
        if ((eight & 0x8080808080808080U) != 0) break;
    }
    while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
    return at;
}

bool IsInsideCharacter(std::string_view text, std::size_t at) noexcept {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

}  // namespace

bool IsRanked(std::string_view text) noexcept {
    std::size_t at = AsciiPrefix(text);
    while (at < text.size()) {
        if (!kIsOrderOfIcu || TakeRank(text, at) == kUnranked) return false;
    }
    return true;
}

std::size_t CommonBeginning(std::string_view left, std::string_view right) noexcept {
    const std::size_t size = std::min(left.size(), right.size());
    std::size_t at = 0;
    for (std::uint64_t l, r; at + sizeof l <= size; at += sizeof l) {
        std::memcpy(&l, left.data() + at, sizeof l);
        std::memcpy(&r, right.data() + at, sizeof r);
        if (l != r) break;
    }
    while (at < size && left[at] == right[at]) ++at;
    while (at > 0 && (IsInsideCharacter(left, at) || IsInsideCharacter(right, at))) --at;
    return at;
}

int CompareRanked(std::string_view left, std::string_view right) noexcept {
    std::size_t l = 0;
    std::size_t r = 0;
    for (;;) {
        const int a = NextRank(left, l);
        const int b = NextRank(right, r);
        if (a != b || a == 0) return a - b;
    }
}

std::uint64_t HashRanked(std::string_view text) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325u;  // FNV-1a, a rank at a time
    std::size_t at = 0;
    while (const int rank = NextRank(text, at)) hash = (hash ^ static_cast<std::uint64_t>(rank)) * 0x100000001B3u;
    return hash;
}

}  // namespace kpTables::sqlite
