// A file that takes its place only when it is whole.
#pragma once

#include <string>

namespace kpTables::kpbook::output {

/// Written without a name, or beside the target where the file system knows no files without one; until Keep is called
/// the target stays as it was, and nothing is left of a draft that is abandoned.
class DraftFile {
public:
    /// Follows symbolic links. A CommandError says why the target cannot be written.
    explicit DraftFile(const std::string& target);
    ~DraftFile();
    DraftFile(const DraftFile&) = delete;
    DraftFile& operator=(const DraftFile&) = delete;

    int Descriptor() const noexcept { return descriptor_; }
    /// A path that opens the draft, for libraries that write files by name.
    std::string Path() const;
    /// Flushes the draft to the disk and puts it in the target's place, with the mode of the file that it replaces.
    void Keep();

private:
    [[noreturn]] void Fail() const;
    void Open();
    /// A name beside the target that no file has.
    std::string FreeName() const;

    std::string target_;
    std::string folder_;
    std::string name_;  ///< the draft's; empty while it has none
    int descriptor_ = -1;
};

/// Whether a target is replaced as a whole: a regular file, or none yet. Others, such as a pipe, are written directly.
bool IsReplaceable(const std::string& path);

}  // namespace kpTables::kpbook::output
