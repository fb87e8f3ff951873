// A copy of a book for one run.
#pragma once

#include <filesystem>

namespace kpTables::bench {

/// A fresh copy that is already flushed to disk, so that no run pays for writing it.
void CopyBook(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace kpTables::bench
