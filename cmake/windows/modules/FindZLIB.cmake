# cmake/windows/Libraries.cmake has made its targets.
set(ZLIB_FOUND TRUE)
