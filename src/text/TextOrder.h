// The order of texts in a book: by letters, Chinese characters in pinyin order after all others, then by accents.
#pragma once

#include <cstdint>
#include <string_view>

namespace kpTables::text {

/// Version of the order. It is part of a book's format: another order, another version.
inline constexpr int kTextOrderVersion = 1;

/// Negative, 0 or positive. Case, width (half or full), control characters and trailing blanks do not count; symbols
/// come before digits, letters and Chinese characters, which Unicode has not assigned last. Bytes that are no UTF-8
/// count as replacement characters.
int CompareTexts(std::string_view left, std::string_view right) noexcept;

/// Equal for texts that compare equal.
std::uint64_t HashOfText(std::string_view text) noexcept;

}  // namespace kpTables::text
