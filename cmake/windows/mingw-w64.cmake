# Cross-building for Windows with Debian's mingw-w64 (posix threads); the toolchain files beside it set mingw.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${mingw}-gcc-posix)
set(CMAKE_CXX_COMPILER ${mingw}-g++-posix)
set(CMAKE_RC_COMPILER ${mingw}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${mingw})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Programs and libraries for hosts need no files beside them, and no time of building stands in them.
foreach(kind IN ITEMS EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
endforeach()
# The headers declare what Windows 7 has, and no macros min and max.
set(CMAKE_C_FLAGS_INIT "${mingwFlags} -D_WIN32_WINNT=0x0601 -DNOMINMAX -DWIN32_LEAN_AND_MEAN")
set(CMAKE_CXX_FLAGS_INIT ${CMAKE_C_FLAGS_INIT})
