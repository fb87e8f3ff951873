// Code page 936, the double-byte code of simplified Chinese.
#pragma once

namespace kpTables::text {

/// True when the character is a double-byte one (its ANSI code, as a signed 16-bit value, is negative).
bool IsDoubleByte936(char32_t character) noexcept;

}  // namespace kpTables::text
