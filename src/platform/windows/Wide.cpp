#include "platform/windows/Wide.h"

#include <cerrno>
#include <system_error>

#include "text/Path.h"

namespace kpTables::platform {

std::wstring Wide(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string Narrow(std::wstring_view wide) {
    const int size = static_cast<int>(wide.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), length, nullptr, nullptr);
    return utf8;
}

std::wstring WidePath(const std::string& utf8) {
    constexpr std::size_t kShort = 240;
    std::wstring path = text::PathOf(utf8).make_preferred().native();
    if (path.size() < kShort || path.starts_with(L"\\\\")) return path;
    std::wstring whole(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    whole.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
    return whole.starts_with(L"\\\\") ? whole : L"\\\\?\\" + whole;
}

int ErrorNumberOf(DWORD code) noexcept {
    switch (code) {
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return EBUSY;
        case ERROR_DIRECTORY:
            return ENOTDIR;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return ENOSPC;
        case ERROR_WRITE_PROTECT:
            return EROFS;
        case ERROR_INVALID_NAME:
            return EINVAL;
        default:
            break;
    }
    const std::error_condition known = std::system_category().default_error_condition(static_cast<int>(code));
    return known.category() == std::generic_category() ? known.value() : EIO;
}

}  // namespace kpTables::platform
