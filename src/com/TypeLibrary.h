// The type library, for hosts that bind early.
#pragma once

#include <oaidl.h>

#include <string>

#include "com/Pointer.h"

namespace kpTables::com {

inline constexpr WORD kLibraryMajor = 1;
inline constexpr WORD kLibraryMinor = 0;
#ifdef _WIN64
inline constexpr SYSKIND kLibrarySystem = SYS_WIN64;
#else
inline constexpr SYSKIND kLibrarySystem = SYS_WIN32;
#endif

/// Writes the library of the server's classes to a file, which is replaced; for 64-bit hosts SYS_WIN64, for 32-bit ones
/// SYS_WIN32. Its names are stored in the writer's ANSI code page, so their Chinese can be read only where that is the
/// reader's too.
HRESULT WriteTypeLibrary(const std::wstring& path, SYSKIND system = kLibrarySystem);

/// The description of an interface or class in the registered library; null when it is not registered.
Pointer<ITypeInfo> TypeInfoOf(REFGUID id) noexcept;

}  // namespace kpTables::com
