// The list of what a folder of exported tables holds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kpTables::kpbook::input {

inline constexpr const char* kManifestName = "manifest.json";

struct ManifestEntry {
    std::string table;
    std::string file;                  ///< name in the folder
    std::optional<std::int64_t> rows;  ///< nothing where no manifest counts them
};

/// The tables of a folder: those of its manifest, else one for each of its files NAME.csv, by name. A CommandError when
/// the folder or its manifest cannot be read, or it has no table.
std::vector<ManifestEntry> ReadFolder(const std::string& folder);

}  // namespace kpTables::kpbook::input
