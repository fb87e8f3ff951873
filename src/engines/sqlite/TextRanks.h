// The order of the characters that most texts of a book consist of, written out because loading ICU's Chinese rules
// takes longer than a whole call on a small book.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kpTables::sqlite {

/// Whether CompareRanked can compare the text: its characters are of ASCII, their full-width forms, or Chinese ones of
/// code page 936.
bool IsRanked(std::string_view text) noexcept;

/// Bytes that both begin with, up to the end of a character: what is ranked compares as what follows them.
std::size_t CommonBeginning(std::string_view left, std::string_view right) noexcept;

/// As ICU compares the two, which must be ranked: negative, 0 or positive.
int CompareRanked(std::string_view left, std::string_view right) noexcept;

/// Equal for ranked texts that compare equal.
std::uint64_t HashRanked(std::string_view text) noexcept;

}  // namespace kpTables::sqlite
