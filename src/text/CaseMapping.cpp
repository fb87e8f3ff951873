#include "text/CaseMapping.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "text/CaseMappingTable.h"
#include "text/Utf8.h"

namespace kpTables::text {

namespace {

template <std::size_t kCount>
char32_t Mapped(const CaseRun (&runs)[kCount], char32_t character) noexcept {
    // Neither Chinese characters nor kana have a case.
    if (character > 0x2DFF && character < 0xA640) return character;
    const auto* run = std::upper_bound(std::begin(runs), std::end(runs), character,
                                       [](char32_t c, const CaseRun& r) { return c < r.first; });
    if (run == std::begin(runs) || (--run)->last < character || (character - run->first) % run->step != 0) {
        return character;
    }
    return static_cast<char32_t>(static_cast<std::int32_t>(character) + run->delta);
}

std::string MappedText(std::string_view text, char32_t (*map)(char32_t) noexcept) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t mapped = map(NextCharacter(text, at));
        if (mapped <= kLastAscii)
            out += static_cast<char>(mapped);
        else
            AppendCharacter(out, mapped);
    }
    return out;
}

}  // namespace

char32_t UpperCase(char32_t c) noexcept {
    if (c <= kLastAscii) return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c;
    return Mapped(kUpperRuns, c);
}

char32_t LowerCase(char32_t c) noexcept {
    if (c <= kLastAscii) return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c;
    return Mapped(kLowerRuns, c);
}

char32_t FoldCase(char32_t c) noexcept {
    if (c <= kLastAscii) return LowerCase(c);
    return Mapped(kFoldRuns, c);
}

std::string UpperCase(std::string_view text) { return MappedText(text, UpperCase); }
std::string LowerCase(std::string_view text) { return MappedText(text, LowerCase); }
std::string FoldCase(std::string_view text) { return MappedText(text, FoldCase); }

}  // namespace kpTables::text
