// Case and ANSI codes of characters.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kpTables::sqlite {

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
