// Code page 936, the double-byte encoding of simplified Chinese.
#pragma once

#include <cstdint>

namespace kpTables::text {

/// True when the character is a double-byte one (its ANSI code, as a signed 16-bit value, is negative).
bool IsDoubleByte936(char32_t character) noexcept;

/// The code of a character, one byte up to FF, else two; '?' for a character that the code page lacks.
std::uint16_t CodeOf936(char32_t character) noexcept;
/// The character of a code. Of two bytes that form no character, the first is taken; a byte that is none is U+FFFD.
char32_t CharacterOf936(std::uint16_t code) noexcept;

}  // namespace kpTables::text
