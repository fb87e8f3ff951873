// Texts inside a page of HTML.
#pragma once

#include <string>
#include <string_view>

namespace kpTables::kpbook::output {

/// The text with markup escaped, for elements and for attributes in double quotes; invalid bytes and control
/// characters, which a page must not contain, as U+FFFD.
std::string HtmlText(std::string_view text);

}  // namespace kpTables::kpbook::output
