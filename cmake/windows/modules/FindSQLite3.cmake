# cmake/windows/Libraries.cmake has made its targets.
set(SQLite3_FOUND TRUE)
