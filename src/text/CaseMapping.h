// Upper and lower case, one character for one (Unicode's simple mappings: ß stays ß).
#pragma once

#include <string>
#include <string_view>

namespace kpTables::text {

char32_t UpperCase(char32_t character) noexcept;
char32_t LowerCase(char32_t character) noexcept;
/// The common character of all its case forms.
char32_t FoldCase(char32_t character) noexcept;

std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);
std::string FoldCase(std::string_view text);

}  // namespace kpTables::text
