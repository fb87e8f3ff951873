#include "platform/NewFile.h"

#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <filesystem>

#include "platform/windows/Wide.h"
#include "text/Path.h"

namespace kpTables::platform {

int NewFile::Make(const std::string& path) {
    // Without FILE_SHARE_DELETE nobody can remove the file while it is being made.
    const HANDLE handle =
        CreateFileW(WidePath(path).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return ErrorNumberOf(GetLastError());
    file_ = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDWR | _O_BINARY);
    path_ = path;
    return 0;
}

NewFile::~NewFile() {
    if (file_ >= 0) _close(file_);
    if (!path_.empty()) DeleteFileW(WidePath(path_).c_str());
}

int NewFile::Place(const std::string& place) {
    if (_commit(file_) != 0) return errno;
    // A file that is open cannot get another name.
    _close(file_);
    file_ = -1;
    if (!MoveFileExW(WidePath(path_).c_str(), WidePath(place).c_str(), MOVEFILE_WRITE_THROUGH)) {
        return ErrorNumberOf(GetLastError());
    }
    path_.clear();
    return 0;
}

bool MeansFullDisk(int error) noexcept { return error == ENOSPC || error == EFBIG; }

void RemoveAbandoned(const std::string& folder, const std::function<bool(std::string_view name)>& isSuch) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(text::PathOf(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        if (isSuch(entry->path().filename().string())) DeleteFileW(entry->path().c_str());
    }
}

}  // namespace kpTables::platform
