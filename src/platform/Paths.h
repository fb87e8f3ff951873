// How paths are written.
#pragma once

namespace kpTables::platform {

/// Whether a path may begin with a drive, as C:/books, which follows a slash in a URL.
#ifdef _WIN32
inline constexpr bool kHasDrives = true;
#else
inline constexpr bool kHasDrives = false;
#endif

}  // namespace kpTables::platform
