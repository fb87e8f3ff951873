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

constexpr bool Continues(std::string_view text, std::size_t index) noexcept {
    return (static_cast<unsigned char>(text[index]) & 0xC0U) == 0x80U;
}

constexpr char32_t Tail(std::string_view text, std::size_t index) noexcept {
    return static_cast<unsigned char>(text[index]) & 0x3FU;
}

}  // namespace

DecodedCharacter DecodeBeyondAscii(std::string_view text) noexcept {
    const char32_t lead = static_cast<unsigned char>(text[0]);
    char32_t character = 0;
    if ((lead & 0xF0U) == 0xE0U) {  // first, as Chinese characters are here
        if (text.size() < 3 || !Continues(text, 1) || !Continues(text, 2)) return kMalformed;
        character = (lead & 0xFU) << 12 | Tail(text, 1) << 6 | Tail(text, 2);
        return character <= kLastTwoBytes || IsSurrogate(character) ? kMalformed : DecodedCharacter{character, 3};
    }
    if ((lead & 0xE0U) == 0xC0U) {
        if (text.size() < 2 || !Continues(text, 1)) return kMalformed;
        character = (lead & 0x1FU) << 6 | Tail(text, 1);
        return character <= kLastAscii ? kMalformed : DecodedCharacter{character, 2};
    }
    if ((lead & 0xF8U) != 0xF0U || text.size() < 4) return kMalformed;
    if (!Continues(text, 1) || !Continues(text, 2) || !Continues(text, 3)) return kMalformed;
    character = (lead & 0x7U) << 18 | Tail(text, 1) << 12 | Tail(text, 2) << 6 | Tail(text, 3);
    const bool fits = character > kLastThreeBytes && character <= kLastCharacter;
    return fits ? DecodedCharacter{character, 4} : kMalformed;
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
