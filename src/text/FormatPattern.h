// The patterns of Format: what they are for, and the parts they are made of.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace kpTables::text {

enum class PatternKind { Literal, Number, Date, Text };

struct Pattern {
    PatternKind kind;
    std::string_view text;
};

/// The expansion of a named pattern ("Standard", "Short Date", in any case); any other text by its first sign that is
/// no literal.
Pattern PatternOf(std::string_view text);

/// The parts between semicolons; at least one.
std::vector<std::string_view> PartsOf(std::string_view pattern);

/// The literal text at that position, \x or "...", without its signs; moves past it. Nothing when there is none.
std::optional<std::string_view> TakeLiteral(std::string_view pattern, std::size_t& at);

/// The mark of a twelve-hour clock (AM/PM, A/P, AMPM) at that position, as it is written; empty when there is none.
std::string_view ClockMarkAt(std::string_view pattern, std::size_t at);

}  // namespace kpTables::text
