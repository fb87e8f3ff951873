// A text column's declared length.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kpTables::functions {

/// What is wrong with a text for a column of that many characters (0: unlimited); nothing when it fits.
std::optional<std::string> LengthComplaint(std::string_view text, int length, std::string_view column);

}  // namespace kpTables::functions
