#include "Collation.h"

#include <sqlite3.h>
#include <unicode/ucol.h>

#include <cstdint>
#include <memory>
#include <string>

#include "Failure.h"
#include "TextRanks.h"
#include "kpTables/MemoryRecordset.h"
#include "sql/print/sqlite/FunctionList.h"

namespace kpTables::sqlite {

namespace {

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

int CompareUnicode(const UCollator* collator, std::string_view left, std::string_view right) noexcept {
    UErrorCode status = U_ZERO_ERROR;
    return ucol_strcollUTF8(collator, left.data(), static_cast<std::int32_t>(left.size()), right.data(),
                            static_cast<std::int32_t>(right.size()), &status);
}

/// A text that is not ranked may be equal to one that is: a circled digit to the digit.
std::optional<std::uint64_t> KeyOfText(std::string_view text) noexcept {
    text = WithoutTrailingBlanks(text);
    return IsRanked(text) ? std::optional(HashRanked(text)) : std::nullopt;
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
    const std::size_t same = CommonBeginning(left, right);
    if (IsRanked(left) && IsRanked(right.substr(same))) return CompareRanked(left.substr(same), right.substr(same));
    if (const UCollator* collator = Collator()) return CompareUnicode(collator, left, right);
    return left.compare(right);
}

const TextOrder kBookTexts = {CompareBookText, KeyOfText};

void RegisterCollation(sqlite3* database) {
    const std::string name(sql::print::sqlite::kTextCollation);
    Check(database,
          sqlite3_create_collation_v2(database, name.c_str(), SQLITE_UTF8, nullptr, CollateCallback, nullptr));
}

}  // namespace kpTables::sqlite
