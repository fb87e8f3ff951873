// Other programs, and files for a moment.
#pragma once

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kpTables::platform {

/// The path of an installed browser that prints pages (Chromium and those made of it); "" when there is none.
std::string BrowserPath();
/// What the browser needs besides, for this user.
std::vector<std::string> BrowserOptions();
/// A file's path as a URL.
std::string FileUrl(const std::filesystem::path& path);

/// Runs a program with its output thrown away; answers whether it succeeded, nothing when it cannot be started.
std::optional<bool> RunQuietly(const std::vector<std::string>& words);

/// A new folder that only the user may open; empty when none can be made.
std::filesystem::path MakeTemporaryFolder();

/// A file without a name, or with one that goes with it.
class TemporaryFile {
public:
    TemporaryFile();
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Null when none could be made, with the reason in errno.
    std::FILE* File() const noexcept { return file_; }
    /// A path that opens the file.
    std::string Path() const;

private:
    std::FILE* file_ = nullptr;
    std::string path_;
};

/// What the system could give to programs, in bytes; nothing where it does not say.
std::optional<std::size_t> AvailableMemory();

}  // namespace kpTables::platform
