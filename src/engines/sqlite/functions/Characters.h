// Text as characters instead of bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kpTables::sqlite {

/// Bytes that the character at that position takes; at least 1, also in text that is no UTF-8.
std::size_t CharacterSize(std::string_view text, std::size_t at) noexcept;
std::size_t CountCharacters(std::string_view text) noexcept;
/// Byte position of the character with that number, from 0; the text's size when it has fewer.
std::size_t OffsetOfCharacter(std::string_view text, std::size_t number) noexcept;
/// The character at a byte position, which moves behind it.
char32_t NextCharacter(std::string_view text, std::size_t& at) noexcept;
void AppendCharacter(std::string& text, char32_t character);

/// The character that stands for all its case forms.
char32_t FoldCase(char32_t character) noexcept;
std::string Folded(std::string_view text);
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);

/// The code of code page 936, as a 16-bit number with a sign (what Asc answers); '?' for a character that it lacks.
std::int16_t AnsiCode(char32_t character);
/// The text of an ANSI code; empty when there is no such character.
std::string TextOfAnsiCode(std::int32_t code);

}  // namespace kpTables::sqlite
