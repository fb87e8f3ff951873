#include "text/Utf8.h"

#include <cstdint>
#include <cstring>

namespace kpTables::text {

namespace {

constexpr DecodedCharacter kMalformed{kReplacement, 1};
constexpr char32_t kLastTwoBytes = 0x7FF;
constexpr char32_t kLastThreeBytes = 0xFFFF;
constexpr char32_t kLastCharacter = 0x10FFFF;

constexpr bool IsSurrogate(char32_t character) noexcept { return character >= 0xD800 && character <= 0xDFFF; }

DecodedCharacter DecodeBeyondAscii(std::string_view text) noexcept {
    const auto byte = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned lead = byte(0);
    const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < bytes) return kMalformed;

    char32_t character = lead & (0xFFU >> (bytes + 1));
    for (std::size_t i = 1; i < bytes; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) return kMalformed;
        character = character << 6 | (byte(i) & 0x3FU);
    }
    constexpr char32_t kSmallest[] = {kLastAscii + 1, kLastTwoBytes + 1, kLastThreeBytes + 1};
    if (character < kSmallest[bytes - 2] || character > kLastCharacter || IsSurrogate(character)) return kMalformed;
    return {character, bytes};
}

}  // namespace

DecodedCharacter DecodeUtf8(std::string_view text) noexcept {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first <= kLastAscii) return {first, 1};
    return DecodeBeyondAscii(text);
}

void AppendCharacter(std::string& text, char32_t character) {
    const auto tail = [character](int shift) { return static_cast<char>(0x80U | (character >> shift & 0x3FU)); };
    if (character <= kLastAscii) {
        text += static_cast<char>(character);
    } else if (character <= kLastTwoBytes) {
        text += {static_cast<char>(0xC0U | character >> 6), tail(0)};
    } else if (character <= kLastThreeBytes) {
        text += {static_cast<char>(0xE0U | character >> 12), tail(6), tail(0)};
    } else {
        text += {static_cast<char>(0xF0U | character >> 18), tail(12), tail(6), tail(0)};
    }
}

std::size_t CountCharacters(std::string_view text) noexcept {
    std::size_t count = 0;
    for (; !text.empty(); ++count) text.remove_prefix(DecodeUtf8(text).bytes);
    return count;
}

std::size_t OffsetOfCharacter(std::string_view text, std::size_t number) noexcept {
    std::size_t at = 0;
    for (; number > 0 && at < text.size(); --number) at += CharacterSize(text, at);
    return at;
}

std::size_t Utf16Length(std::string_view text) noexcept {
    std::size_t units = 0;
    while (!text.empty()) {
        const auto [character, bytes] = DecodeUtf8(text);
        units += character > kLastThreeBytes ? 2 : 1;
        text.remove_prefix(bytes);
    }
    return units;
}

std::size_t AsciiPrefix(std::string_view text) noexcept {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::size_t at = 0;
    for (; at + sizeof(std::uint64_t) <= text.size(); at += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + at, sizeof word);
        if (word & kHighBits) break;
    }
    while (at < text.size() && static_cast<unsigned char>(text[at]) <= kLastAscii) ++at;
    return at;
}

bool IsValidUtf8(std::string_view text) noexcept {
    for (;;) {
        text.remove_prefix(AsciiPrefix(text));
        if (text.empty()) return true;
        const auto decoded = DecodeUtf8(text);
        if (!decoded.IsValid()) return false;
        text.remove_prefix(decoded.bytes);
    }
}

std::string ReplaceInvalidUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        std::size_t taken = AsciiPrefix(text);
        bool valid = true;
        if (taken == 0) {
            const auto decoded = DecodeUtf8(text);
            taken = decoded.bytes;
            valid = decoded.IsValid();
        }
        if (valid)
            out += text.substr(0, taken);
        else
            AppendCharacter(out, kReplacement);
        text.remove_prefix(taken);
    }
    return out;
}

}  // namespace kpTables::text
