#include "platform/Replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace kpTables::platform {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kNewFile = 0666;  // less the umask

/// The file that a chain of symbolic links ends at, which need not exist.
fs::path EndOfLinks(fs::path path) {
    constexpr int kLongestChain = 40;
    std::error_code error;
    for (int i = 0; i < kLongestChain && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return path;
}

void FlushFolder(const std::string& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    ::fsync(descriptor);
    ::close(descriptor);
}

}  // namespace

bool IsReplaceable(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode);
}

int Replacement::Begin(const std::string& target) {
    target_ = EndOfLinks(target);
    folder_ = fs::path(target_).parent_path();
    if (folder_.empty()) folder_ = ".";
    // Replacing a file needs no right to write it, but whoever took that right away meant to keep the file.
    if (::access(target_.c_str(), W_OK) != 0 && errno != ENOENT) return errno;
    if (const int code = Open()) return code;
    struct stat replaced {};
    if (::stat(target_.c_str(), &replaced) == 0 && ::fchmod(descriptor_, replaced.st_mode & 07777) != 0) return errno;
    return 0;
}

Replacement::~Replacement() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!name_.empty()) ::unlink(name_.c_str());
}

/// Without a name, or beside the target where the file system knows no files without one.
int Replacement::Open() {
    descriptor_ = ::open(folder_.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kNewFile);
    if (descriptor_ >= 0) return 0;
    if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) return errno;
    const std::string name = FreeName();
    descriptor_ = ::open(name.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kNewFile);
    if (descriptor_ < 0) return errno;
    name_ = name;
    return 0;
}

std::string Replacement::FreeName() const {
    for (int i = 0;; ++i) {
        const std::string name = folder_ + "/.kpbook-" + std::to_string(::getpid()) + "-" + std::to_string(i);
        if (::access(name.c_str(), F_OK) != 0) return name;
    }
}

std::string Replacement::Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

int Replacement::Keep() {
    if (::fsync(descriptor_) != 0) return errno;
    if (name_.empty()) {
        // A link cannot replace a file, so the new file gets a name of its own first.
        const std::string name = FreeName();
        if (::linkat(AT_FDCWD, Path().c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) return errno;
        name_ = name;
    }
    if (::rename(name_.c_str(), target_.c_str()) != 0) return errno;
    name_.clear();
    FlushFolder(folder_);
    return 0;
}

}  // namespace kpTables::platform
