// UTF-8 text as characters instead of bytes. A byte that belongs to no character counts as one, U+FFFD.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kpTables::text {

inline constexpr char32_t kLastAscii = 0x7F;
inline constexpr char32_t kReplacement = 0xFFFD;

struct DecodedCharacter {
    char32_t character;
    std::size_t bytes;  ///< its length in the text, at least 1

    /// False for a byte that belongs to no character; a U+FFFD that is written in the text has three bytes.
    constexpr bool IsValid() const noexcept { return character != kReplacement || bytes > 1; }
};

/// As DecodeUtf8, of a text that does not begin with ASCII.
DecodedCharacter DecodeBeyondAscii(std::string_view text) noexcept;
/// First character of a text that is not empty.
inline DecodedCharacter DecodeUtf8(std::string_view text) noexcept {
    const auto first = static_cast<unsigned char>(text[0]);
    return first <= kLastAscii ? DecodedCharacter{first, 1} : DecodeBeyondAscii(text);
}
/// The character at a byte position, which moves past it.
inline char32_t NextCharacter(std::string_view text, std::size_t& at) noexcept {
    const auto [character, bytes] = DecodeUtf8(text.substr(at));
    at += bytes;
    return character;
}
/// Bytes of the character at a byte position.
inline std::size_t CharacterSize(std::string_view text, std::size_t at) noexcept {
    return DecodeUtf8(text.substr(at)).bytes;
}
void AppendCharacter(std::string& text, char32_t character);

std::size_t CountCharacters(std::string_view text) noexcept;
/// Byte position of the character with that number, from 0; the text's size when it has fewer.
std::size_t OffsetOfCharacter(std::string_view text, std::size_t number) noexcept;
/// Length in UTF-16 units, as Visual Basic's strings count.
std::size_t Utf16Length(std::string_view text) noexcept;
/// Length of the ASCII characters that the text begins with.
std::size_t AsciiPrefix(std::string_view text) noexcept;

bool IsValidUtf8(std::string_view text) noexcept;
/// The text with every byte that belongs to no character replaced by U+FFFD.
std::string ReplaceInvalidUtf8(std::string_view text);

}  // namespace kpTables::text
