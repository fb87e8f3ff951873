#include "platform/Replacement.h"

#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <filesystem>

#include "platform/windows/Wide.h"
#include "text/Path.h"

namespace kpTables::platform {

namespace fs = std::filesystem;

bool IsReplaceable(const std::string& path) {
    std::error_code error;
    const fs::path target = text::PathOf(path);
    // Names of devices (NUL, CON) lead to no file in any folder.
    const HANDLE handle = CreateFileW(target.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return true;
    const DWORD type = GetFileType(handle);
    CloseHandle(handle);
    return type == FILE_TYPE_DISK && !fs::is_directory(target, error);
}

int Replacement::Begin(const std::string& target) {
    std::error_code error;
    const fs::path path = text::PathOf(target);
    target_ = (fs::is_symlink(path, error) ? fs::weakly_canonical(path) : path).string();
    folder_ = text::PathOf(target_).parent_path().string();
    if (folder_.empty()) folder_ = ".";
    const DWORD attributes = GetFileAttributesW(WidePath(target_).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) return EACCES;
    return Open();
}

Replacement::~Replacement() {
    if (descriptor_ >= 0) _close(descriptor_);
    if (!name_.empty()) DeleteFileW(WidePath(name_).c_str());
}

int Replacement::Open() {
    const std::string name = FreeName();
    const HANDLE handle =
        CreateFileW(WidePath(name).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return ErrorNumberOf(GetLastError());
    descriptor_ = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDWR | _O_BINARY);
    name_ = name;
    return 0;
}

std::string Replacement::FreeName() const {
    for (int i = 0;; ++i) {
        const std::string name =
            folder_ + "\\.kpbook-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(i);
        if (GetFileAttributesW(WidePath(name).c_str()) == INVALID_FILE_ATTRIBUTES) return name;
    }
}

std::string Replacement::Path() const { return name_; }

int Replacement::Keep() {
    if (_commit(descriptor_) != 0) return errno;
    // A file that is open cannot get another name.
    _close(descriptor_);
    descriptor_ = -1;
    if (!MoveFileExW(WidePath(name_).c_str(), WidePath(target_).c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return ErrorNumberOf(GetLastError());
    }
    name_.clear();
    return 0;
}

}  // namespace kpTables::platform
