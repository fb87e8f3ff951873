// Texts by a pattern of Format.
#pragma once

#include <string>
#include <string_view>

namespace kpTables::text {

/// @ is a character or a blank, & a character or nothing; they are filled from the right, or from the left where the
/// pattern has a !. < and > change the case. A second part after a semicolon is for an empty text.
std::string TextByPattern(std::string_view text, std::string_view pattern);

}  // namespace kpTables::text
