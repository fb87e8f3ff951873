// UTF-8: is it valid, what to show where it is not, and how many columns of a terminal it takes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kpTables::kpbook {

bool IsValidUtf8(std::string_view text) noexcept;
/// The text with every byte that belongs to no character replaced by U+FFFD.
std::string ReplaceInvalidUtf8(std::string_view text);
/// Columns that the text takes on a terminal: two for Chinese characters, none for combining marks.
std::size_t DisplayWidth(std::string_view text) noexcept;
/// The text on one line: control characters as \n, \t, \xHH, invalid bytes as U+FFFD.
std::string Printable(std::string_view text);

}  // namespace kpTables::kpbook
