// ANSI codes of characters.
#pragma once

#include <cstdint>
#include <string>

namespace kpTables::sqlite {

/// The code of code page 936, as a 16-bit number with a sign (what Asc answers); '?' for a character that it lacks.
std::int16_t AnsiCode(char32_t character);
/// The text of an ANSI code; U+FFFD when there is no such character.
std::string TextOfAnsiCode(std::int32_t code);

}  // namespace kpTables::sqlite
