// The text order for searching and sorting rows: ASCII letters ignoring case, trailing blanks ignored, else by code
// point.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kpTables::text {

std::string_view WithoutTrailingBlanks(std::string_view text) noexcept;
std::strong_ordering CompareFolded(std::string_view left, std::string_view right) noexcept;
/// Appends the beginning of the text, eight bytes to a number, at most so many numbers: of two texts the one with
/// the lower first number that differs comes first, a missing one counting as 0.
void AppendFolded(std::string_view text, std::size_t most, std::vector<std::uint64_t>& numbers);
/// Equal for texts that CompareFolded finds equal.
std::uint64_t HashFolded(std::string_view text) noexcept;

}  // namespace kpTables::text
