// UTF-8 text as a terminal shows it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/Utf8.h"

namespace kpTables::kpbook {

using text::IsValidUtf8;
using text::ReplaceInvalidUtf8;

/// Columns that the text takes on a terminal: two for Chinese characters, none for combining marks.
std::size_t DisplayWidth(std::string_view text) noexcept;
/// The text on one line: control characters as \n, \t, \xHH, invalid bytes as U+FFFD.
std::string Printable(std::string_view text);
/// A control character as \n, \r or \t, any other as its code in two digits behind a prefix.
void AppendControl(std::string& out, unsigned char control, std::string_view prefix = "\\x");

}  // namespace kpTables::kpbook
