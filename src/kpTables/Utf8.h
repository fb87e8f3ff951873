// Walks UTF-8 text by characters.
#pragma once

#include <cstddef>
#include <string_view>

namespace kpTables {

struct DecodedCharacter {
    char32_t character;
    std::size_t bytes;  ///< its length in the text, at least 1
};

/// First character of a text that is not empty. A byte that begins none stands for U+FFFD by itself.
DecodedCharacter DecodeUtf8(std::string_view text) noexcept;

/// Length in UTF-16 units, as the original's strings count.
std::size_t Utf16Length(std::string_view text) noexcept;

}  // namespace kpTables
