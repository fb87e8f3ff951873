#include "Collation.h"

#include <sqlite3.h>
#include <unicode/ucol.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "Failure.h"
#include "sql/sqlite/FunctionList.h"

namespace kpTables::sqlite {

namespace {

// ICU's order of the ASCII characters, written out because loading ICU's Chinese rules takes longer than a whole call
// on a small book. A test compares the two. Characters that are not here are ignored.
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

struct CloseCollator {
    void operator()(UCollator* collator) const noexcept { ucol_close(collator); }
};
using CollatorPtr = std::unique_ptr<UCollator, CloseCollator>;

CollatorPtr OpenCollator() noexcept {
    UErrorCode status = U_ZERO_ERROR;
    CollatorPtr collator(ucol_open("zh-u-co-pinyin", &status));
    ucol_setStrength(collator.get(), UCOL_SECONDARY);
    // ICU's Chinese rules put Chinese characters before letters; both original databases put them after.
    const std::int32_t noReordering[] = {UCOL_REORDER_CODE_NONE};
    ucol_setReorderCodes(collator.get(), noReordering, 1, &status);
    return U_SUCCESS(status) ? std::move(collator) : nullptr;
}

/// Made at first need. Null when ICU's data are not installed.
const UCollator* Collator() noexcept {
    static const CollatorPtr collator = OpenCollator();
    return collator.get();
}

std::string_view WithoutTrailingBlanks(std::string_view text) noexcept {
    const auto last = text.find_last_not_of(' ');
    return last == text.npos ? std::string_view() : text.substr(0, last + 1);
}

bool IsAscii(std::string_view text) noexcept {
    std::uint64_t all = 0;
    std::size_t i = 0;
    for (; i + sizeof all <= text.size(); i += sizeof all) {
        std::uint64_t eight;
        std::memcpy(&eight, text.data() + i, sizeof eight);
        all |= eight;
    }
    for (; i < text.size(); ++i) all |= static_cast<unsigned char>(text[i]);
    return (all & 0x8080808080808080U) == 0;
}

/// Rank of the next character that is not ignored, 0 at the end.
int NextRank(std::string_view text, std::size_t& at) noexcept {
    while (at < text.size()) {
        if (const int rank = kAsciiRanks[static_cast<unsigned char>(text[at++])]) return rank;
    }
    return 0;
}

int CompareAscii(std::string_view left, std::string_view right) noexcept {
    std::size_t l = 0;
    std::size_t r = 0;
    for (;;) {
        const int a = NextRank(left, l);
        const int b = NextRank(right, r);
        if (a != b || a == 0) return a - b;
    }
}

int CompareUnicode(const UCollator* collator, std::string_view left, std::string_view right) noexcept {
    UErrorCode status = U_ZERO_ERROR;
    return ucol_strcollUTF8(collator, left.data(), static_cast<std::int32_t>(left.size()), right.data(),
                            static_cast<std::int32_t>(right.size()), &status);
}

int CollateCallback(void*, int leftSize, const void* left, int rightSize, const void* right) noexcept {
    return CompareBookText({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
                           {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
}

}  // namespace

int CompareBookText(std::string_view left, std::string_view right) noexcept {
    left = WithoutTrailingBlanks(left);
    right = WithoutTrailingBlanks(right);
    if (left == right) return 0;
    if (IsAscii(left) && IsAscii(right)) return CompareAscii(left, right);
    if (const UCollator* collator = Collator()) return CompareUnicode(collator, left, right);
    return left.compare(right);
}

void RegisterCollation(sqlite3* database) {
    const std::string name(sql::kTextCollation);
    Check(database,
          sqlite3_create_collation_v2(database, name.c_str(), SQLITE_UTF8, nullptr, CollateCallback, nullptr));
}

}  // namespace kpTables::sqlite
