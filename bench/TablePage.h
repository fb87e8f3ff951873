// The table of all figures on a page of its own.
#pragma once

#include <filesystem>
#include <string>

namespace kpTables::bench {

/// Puts text between the page's marks in place of what is there. Throws std::runtime_error when the page has none.
void WriteTable(const std::filesystem::path& page, const std::string& text);

}  // namespace kpTables::bench
