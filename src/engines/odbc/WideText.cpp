#include "engines/odbc/WideText.h"

#include <cstddef>

#include "text/Utf8.h"

namespace kpTables::engines::odbc {

namespace {

constexpr char32_t kFirstBeyondBasicPlane = 0x10000;
constexpr char32_t kHighSurrogates = 0xD800;
constexpr char32_t kLowSurrogates = 0xDC00;
constexpr char32_t kBehindSurrogates = 0xE000;
constexpr unsigned kSurrogateBits = 10;
constexpr char32_t kSurrogateMask = 0x3FF;

bool IsHigh(char32_t unit) noexcept { return unit >= kHighSurrogates && unit < kLowSurrogates; }
bool IsLow(char32_t unit) noexcept { return unit >= kLowSurrogates && unit < kBehindSurrogates; }

}  // namespace

std::u16string Wide(std::string_view text) {
    std::u16string wide;
    wide.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t character = text::NextCharacter(text, at);
        if (character < kFirstBeyondBasicPlane) {
            wide += static_cast<char16_t>(character);
            continue;
        }
        const char32_t rest = character - kFirstBeyondBasicPlane;
        wide += static_cast<char16_t>(kHighSurrogates + (rest >> kSurrogateBits));
        wide += static_cast<char16_t>(kLowSurrogates + (rest & kSurrogateMask));
    }
    return wide;
}

void AppendNarrow(std::string& to, std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t character = text[i];
        if (IsHigh(character) && i + 1 < text.size() && IsLow(text[i + 1])) {
            character = kFirstBeyondBasicPlane + ((character - kHighSurrogates) << kSurrogateBits) +
                        (text[++i] - kLowSurrogates);
        } else if (IsHigh(character) || IsLow(character)) {
            character = text::kReplacement;
        }
        text::AppendCharacter(to, character);
    }
}

std::string NarrowUntilZero(const SQLWCHAR* text) {
    const SQLWCHAR* end = text;
    while (*end != 0) ++end;
    return Narrow(std::u16string(text, end));
}

std::string Narrow(std::u16string_view text) {
    std::string narrow;
    narrow.reserve(text.size());
    AppendNarrow(narrow, text);
    return narrow;
}

}  // namespace kpTables::engines::odbc
