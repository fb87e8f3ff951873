// Writes the table of all figures into a page.
#pragma once

#include <filesystem>
#include <string>

namespace kpTables::bench {

/// Replaces the text between the page's marks. Throws std::runtime_error when the page has none.
void WriteTable(const std::filesystem::path& page, const std::string& text);

}  // namespace kpTables::bench
