// UTF-8 and the UTF-16 that Windows takes; its error codes as those of the standard library.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace kpTables::platform {

/// What is no UTF-8 becomes U+FFFD.
std::wstring Wide(std::string_view utf8);
/// Lone surrogates become U+FFFD.
std::string Narrow(std::wstring_view wide);
/// A path for the functions of files, long or short.
std::wstring WidePath(const std::string& utf8);
/// The error number (EACCES, ENOSPC ...) of a code of GetLastError; EIO for one that has none.
int ErrorNumberOf(DWORD code) noexcept;

struct CloseHandleOf {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};

}  // namespace kpTables::platform
