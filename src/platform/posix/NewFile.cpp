#include "platform/NewFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace kpTables::platform {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kOwnerOnly = 0600;

/// Whether the file still has that name, so that nobody has removed it.
bool HasName(int file, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    return fstat(file, &opened) == 0 && lstat(path.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

bool Lock(int file) { return flock(file, LOCK_EX | LOCK_NB) == 0; }

/// A file system without locks locks nobody out.
bool IsLockedByAnother(int file) { return !Lock(file) && errno == EWOULDBLOCK; }

/// 0, or the error. A name that is taken is never replaced.
int Rename(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) return errno;
    // Not every file system can rename without replacing.
    if (link(from.c_str(), to.c_str()) != 0) return errno;
    unlink(from.c_str());
    return 0;
}

fs::path FolderOf(const std::string& place) {
    fs::path folder = fs::path(place).parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

/// A new name survives a power failure when its folder is on the disk. A folder that cannot be read cannot be synced.
int SyncFolder(const fs::path& folder) {
    const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened < 0) return errno == EACCES ? 0 : errno;
    const int code = fsync(opened) == 0 || errno == EINVAL ? 0 : errno;
    close(opened);
    return code;
}

struct CloseFolder {
    void operator()(DIR* folder) const noexcept { closedir(folder); }
};

/// Removes a file that nobody is making.
void RemoveIfAbandoned(const fs::path& draft) {
    const int file = open(draft.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) return;
    struct stat found {};
    if (fstat(file, &found) == 0 && S_ISREG(found.st_mode) && Lock(file)) unlink(draft.c_str());
    close(file);
}

}  // namespace

int NewFile::Make(const std::string& path) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly);
    if (file < 0) return errno;
    // The mode that was asked for is cut by the process's mask. Some file systems know no modes.
    static_cast<void>(fchmod(file, kOwnerOnly));
    // Somebody may have taken the new file for one that was left.
    if (IsLockedByAnother(file) || !HasName(file, path)) {
        close(file);
        return EEXIST;
    }
    file_ = file;  // holds a lock that tells a file in the making from one that was left
    path_ = path;
    return 0;
}

NewFile::~NewFile() {
    if (!path_.empty()) unlink(path_.c_str());
    if (file_ >= 0) close(file_);
}

int NewFile::Place(const std::string& place) {
    if (fsync(file_) != 0) return errno;
    if (const int code = Rename(path_, place)) return code;
    path_.clear();
    return SyncFolder(FolderOf(place));
}

bool MeansFullDisk(int error) noexcept { return error == ENOSPC || error == EDQUOT || error == EFBIG; }

void RemoveAbandoned(const std::string& folder, const std::function<bool(std::string_view name)>& isSuch) {
    // The standard library's iterator ends the program when there is no memory for it.
    const std::unique_ptr<DIR, CloseFolder> entries(opendir(folder.c_str()));
    if (!entries) return;
    while (const dirent* entry = readdir(entries.get())) {
        if (isSuch(entry->d_name)) RemoveIfAbandoned(fs::path(folder) / entry->d_name);
    }
}

}  // namespace kpTables::platform
