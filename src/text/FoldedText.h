// The text order for searching and sorting rows: ASCII letters ignoring case, trailing blanks ignored, else by code
// point.
#pragma once

#include <compare>
#include <cstdint>
#include <string_view>

namespace kpTables::text {

std::string_view WithoutTrailingBlanks(std::string_view text) noexcept;
std::strong_ordering CompareFolded(std::string_view left, std::string_view right) noexcept;
/// Equal for texts that CompareFolded finds equal.
std::uint64_t HashFolded(std::string_view text) noexcept;

}  // namespace kpTables::text
