#include "engines/sqlite/DraftFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string_view>
#include <system_error>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::sqlite {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMark = ".new-";
constexpr std::size_t kDigits = 8;
/// Longer names are cut in the draft's name, which must not exceed what a folder takes.
constexpr std::size_t kLongestName = 200;
constexpr mode_t kOwnerOnly = 0600;

[[noreturn]] void RefuseDraft(const std::string& place, const std::string& complaint,
                              DatabaseErrorNumber number = DatabaseErrorNumber::Failure) {
    throw DatabaseError(static_cast<std::int32_t>(number),
                        Message("The book '{1}' cannot be made: {2}", place, complaint));
}

DatabaseErrorNumber NumberOf(int code) noexcept {
    switch (code) {
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return DatabaseErrorNumber::DiskFull;
        case EACCES:
        case EPERM:
        case EROFS:
            return DatabaseErrorNumber::NotPermitted;
        case EIO:
            return DatabaseErrorNumber::DiskFailure;
        default:
            return DatabaseErrorNumber::Failure;
    }
}

[[noreturn]] void RefuseForCode(const std::string& place, int code) {
    if (code == EEXIST) RefuseDraft(place, Message("there is a file of that name already"));
    RefuseDraft(place, std::generic_category().message(code), NumberOf(code));
}

fs::path FolderOf(const std::string& place) {
    fs::path folder = fs::path(place).parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

/// The beginning of the names of all drafts for a place.
std::string PrefixOf(const std::string& place) {
    return "." + fs::path(place).filename().string().substr(0, kLongestName).append(kMark);
}

bool IsDraftName(std::string_view name, std::string_view prefix) {
    return name.size() == prefix.size() + kDigits && name.starts_with(prefix) &&
           name.find_first_not_of("0123456789abcdef", prefix.size()) == name.npos;
}

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

/// Removes a draft that nobody is making.
void RemoveLeftover(const fs::path& draft) {
    const int file = open(draft.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) return;
    struct stat found {};
    if (fstat(file, &found) == 0 && S_ISREG(found.st_mode) && Lock(file)) unlink(draft.c_str());
    close(file);
}

}  // namespace

DraftFile::DraftFile(const std::string& place) : place_(place) {
    if (place.empty() || place.find('\0') != place.npos)
        RefuseDraft(place, Message("the path is empty or holds a NUL character"));
    std::error_code error;
    if (fs::exists(fs::symlink_status(place, error)))
        RefuseDraft(place, Message("there is a file of that name already"));
    for (const char* suffix : {"-wal", "-journal"}) {
        const auto size = fs::file_size(place + suffix, error);
        if (!error && size > 0) {
            RefuseDraft(place,
                        Message("beside it is '{1}{2}', the log of an earlier book of that name; move that away first",
                                fs::path(place).filename().string(), suffix));
        }
    }
    RemoveLeftovers();
    while (!Take()) {
    }
}

/// False when somebody has taken the new file for one that was left.
bool DraftFile::Take() {
    std::random_device random;
    char digits[kDigits + 1];
    std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(random()));
    path_ = (FolderOf(place_) / (PrefixOf(place_) + digits)).string();
    file_ = open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly);
    if (file_ < 0) {
        if (errno == EEXIST) return false;
        RefuseForCode(place_, errno);
    }
    // The mode that was asked for is cut by the process's mask. Some file systems know no modes.
    static_cast<void>(fchmod(file_, kOwnerOnly));
    if (!IsLockedByAnother(file_) && HasName(file_, path_)) return true;
    close(file_);
    return false;
}

DraftFile::~DraftFile() {
    if (!published_) unlink(path_.c_str());
    close(file_);
}

void DraftFile::Publish() {
    if (fsync(file_) != 0) RefuseForCode(place_, errno);
    if (const int code = Rename(path_, place_)) RefuseForCode(place_, code);
    published_ = true;
    if (const int code = SyncFolder(FolderOf(place_))) RefuseForCode(place_, code);
}

void DraftFile::RemoveLeftovers() const {
    const std::string prefix = PrefixOf(place_);
    const fs::path folder = FolderOf(place_);
    // The standard library's iterator ends the program when there is no memory for it.
    const std::unique_ptr<DIR, CloseFolder> entries(opendir(folder.c_str()));
    if (!entries) return;
    while (const dirent* entry = readdir(entries.get())) {
        if (IsDraftName(entry->d_name, prefix)) RemoveLeftover(folder / entry->d_name);
    }
}

}  // namespace kpTables::engines::sqlite
