// Paths of the standard library, whose narrow texts are UTF-8 everywhere.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kpTables::text {

/// The path that a UTF-8 text means. A path made of the text itself would read it in the system's own encoding.
inline std::filesystem::path PathOf(std::string_view utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

}  // namespace kpTables::text
