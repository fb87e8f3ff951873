// The order of texts in a book.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kpTables::text {

/// Version of the order. It is part of a book's format and changes with the order.
inline constexpr int kTextOrderVersion = 1;

/// Negative, 0 or positive. Case, width (half or full), control characters and trailing blanks do not count. Symbols
/// come first, then digits, letters by script, Chinese characters by pinyin and last, by code point, what Unicode
/// 15 has not assigned. Accents decide between texts that are equal without them. A byte that belongs to no character
/// counts as a replacement character.
int CompareTexts(std::string_view left, std::string_view right) noexcept;

/// Appends the beginning of the text's weights without accents, as at most so many numbers: of two texts the one with
/// the lower first number that differs comes first, a missing one counting as 0.
void AppendWeights(std::string_view text, std::size_t most, std::vector<std::uint64_t>& numbers);

/// Equal for texts that compare equal.
std::uint64_t HashOfText(std::string_view text) noexcept;

}  // namespace kpTables::text
