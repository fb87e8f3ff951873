// UTF-8 and the wide characters that the editing library works with.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kpTables::kpbook::shell {

/// How many bytes the character that begins with this one has; 1 for a byte that begins none.
std::size_t SequenceLength(char lead) noexcept;
/// text: valid UTF-8.
std::wstring WideText(std::string_view text);
std::string NarrowText(std::wstring_view text);

}  // namespace kpTables::kpbook::shell
