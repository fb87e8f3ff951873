// Texts at the border: UTF-8 within, UTF-16 outside.
#pragma once

#include <string>
#include <string_view>

namespace kpTables::com {

/// Half a surrogate pair that stands alone becomes three bytes as if it were a character, so that it comes back.
std::string ToUtf8(std::wstring_view text);
/// A byte that belongs to no character becomes U+FFFD.
std::wstring ToUtf16(std::string_view text);

}  // namespace kpTables::com
