#include "com/Utf16.h"

#include "text/Utf8.h"

namespace kpTables::com {
namespace {

constexpr char32_t kFirstSupplementary = 0x10000;

constexpr bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

constexpr char32_t kTailBits = 6;
constexpr unsigned kTailMask = 0x3F;

void AppendLoneSurrogate(std::string& text, char32_t unit) {
    text += static_cast<char>(0xE0 | (unit >> (2 * kTailBits)));
    text += static_cast<char>(0x80 | ((unit >> kTailBits) & kTailMask));
    text += static_cast<char>(0x80 | (unit & kTailMask));
}

/// The lone surrogate that a text begins with; 0 when it does not.
wchar_t LoneSurrogate(std::string_view text) {
    if (text.size() < 3) return 0;
    const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    if (byte(0) != 0xED || byte(1) < 0xA0 || byte(1) > 0xBF || (byte(2) & 0xC0) != 0x80) return 0;
    return static_cast<wchar_t>(0xD000 | ((byte(1) & kTailMask) << kTailBits) | (byte(2) & kTailMask));
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        const char32_t next = i + 1 < text.size() ? text[i + 1] : U'\0';
        if (IsHighSurrogate(unit) && IsLowSurrogate(next)) {
            text::AppendCharacter(utf8, kFirstSupplementary + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++i;
        } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit)) {
            AppendLoneSurrogate(utf8, unit);
        } else {
            text::AppendCharacter(utf8, unit);
        }
    }
    return utf8;
}

std::wstring ToUtf16(std::string_view text) {
    std::wstring utf16;
    utf16.reserve(text.size());
    while (!text.empty()) {
        if (const wchar_t lone = LoneSurrogate(text)) {
            utf16 += lone;
            text.remove_prefix(3);
            continue;
        }
        const auto [character, bytes] = text::DecodeUtf8(text);
        if (character >= kFirstSupplementary) {
            const char32_t offset = character - kFirstSupplementary;
            utf16 += static_cast<wchar_t>(0xD800 + (offset >> 10));
            utf16 += static_cast<wchar_t>(0xDC00 + (offset & 0x3FF));
        } else {
            utf16 += static_cast<wchar_t>(character);
        }
        text.remove_prefix(bytes);
    }
    return utf16;
}

}  // namespace kpTables::com
