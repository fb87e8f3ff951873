# 32-bit Windows. The results of arithmetic are those of 64-bit programs, and hosts (Visual Basic 6) may call with a
# stack that is aligned to four bytes only.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(mingw i686-w64-mingw32)
set(mingwFlags "-msse2 -mfpmath=sse -mstackrealign")
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-in-wine-x86)
