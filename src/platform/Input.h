// Files and standard input, read in pieces until a signal arrives.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace kpTables::platform {

inline constexpr int kStandardInput = 0;

/// A descriptor; -1 with the reason in errno.
int OpenInput(const std::string& path) noexcept;
void CloseInput(int descriptor) noexcept;
/// Reads what is available, at most size bytes; 0 at the end. -1 with the reason in errno, EINTR when a watched signal
/// has arrived.
std::ptrdiff_t ReadInput(int descriptor, char* buffer, std::size_t size) noexcept;

/// fopen for a path in UTF-8; what is read and written stays as it is.
std::FILE* OpenFile(const std::string& path, const char* mode) noexcept;

}  // namespace kpTables::platform
