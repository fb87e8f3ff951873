// The length that a text column declares.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kpTables::functions {

/// What is wrong with a text for a column of so many characters (0: of any number); nothing when it fits.
std::optional<std::string> LengthComplaint(std::string_view text, int length, std::string_view column);

}  // namespace kpTables::functions
