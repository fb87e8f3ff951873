// A file that takes another's place when it is whole.
#pragma once

#include <string>

namespace kpTables::platform {

/// Until Keep the target stays as it was, and nothing is left of a replacement that is abandoned. Results are 0 or an
/// error number of the standard library.
class Replacement {
public:
    Replacement() = default;
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// Begins one for the file that a path, through symbolic links, leads to.
    int Begin(const std::string& target);
    /// A path that opens the new file.
    std::string Path() const;
    /// Brings the new file to the disk and puts it in the target's place, with the rights of the file that was there.
    int Keep();
    /// What is replaced.
    const std::string& Target() const noexcept { return target_; }

private:
    int Open();
    /// A name beside the target that no file has.
    std::string FreeName() const;

    std::string target_;
    std::string folder_;
    std::string name_;  ///< the new file's; empty while it has none
    int descriptor_ = -1;
};

/// Whether a target is replaced as a whole: a regular file, or none yet. Others, such as a pipe, are written directly.
bool IsReplaceable(const std::string& path);

}  // namespace kpTables::platform
