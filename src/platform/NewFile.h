// A file that is made beside its place and gets its name when it is whole.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kpTables::platform {

/// An empty file that other programs can tell from one that was left, and that only its owner may read and write where
/// the system's files have such rights. Results are 0 or an error number of the standard library (EEXIST, ENOSPC ...).
class NewFile {
public:
    NewFile() = default;
    /// Removes the file unless it was placed.
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// Makes the file; EEXIST when there is one of that name.
    int Make(const std::string& path);
    /// Brings the file to the disk, gives it its place, and brings that to the disk; EEXIST when the place is taken.
    int Place(const std::string& place);

private:
    std::string path_;  ///< empty when nothing is to be removed
    int file_ = -1;
};

/// Removes the files of a folder that have such a name and that no program is making.
void RemoveAbandoned(const std::string& folder, const std::function<bool(std::string_view name)>& isSuch);

/// Whether an error number says that the disk, or the user's part of it, has no more room.
bool MeansFullDisk(int error) noexcept;

}  // namespace kpTables::platform
