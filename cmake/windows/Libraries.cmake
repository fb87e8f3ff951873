# The libraries that programs for Windows are linked with, under the names that their Linux packages give them.
enable_language(C)
enable_language(RC)
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR}/modules)

# Builds for 64 and 32 bits share the sources.
cmake_path(GET PROJECT_BINARY_DIR PARENT_PATH sources)
set(sources ${sources}/windows-sources)
execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/fetch-sources ${sources}
                OUTPUT_VARIABLE told ERROR_VARIABLE told RESULT_VARIABLE failure)
if(failure)
  message(FATAL_ERROR "The sources of SQLite and other libraries cannot be had:\n${told}")
endif()

# library(NAME SOURCES...): a static library of others' sources, whose warnings are theirs.
function(library name)
  list(TRANSFORM ARGN PREPEND ${sources}/)
  add_library(${name} STATIC ${ARGN})
  # The names of their files, in their messages, do not tell where they were built.
  target_compile_options(${name} PRIVATE -w -ffile-prefix-map=${sources}/=)
  set_target_properties(${name} PROPERTIES UNITY_BUILD OFF)
endfunction()

library(sqlite3 sqlite3/made/sqlite3.c)
target_include_directories(sqlite3 SYSTEM PUBLIC ${sources}/sqlite3/made)
# As in Debian's library, of which the books on Linux are made.
target_compile_definitions(sqlite3 PRIVATE
  SQLITE_ENABLE_COLUMN_METADATA SQLITE_ENABLE_MATH_FUNCTIONS SQLITE_LIKE_DOESNT_MATCH_BLOBS SQLITE_SECURE_DELETE
  SQLITE_SOUNDEX SQLITE_USE_URI SQLITE_THREADSAFE=1 SQLITE_MAX_DEFAULT_PAGE_SIZE=32768
  SQLITE_MAX_VARIABLE_NUMBER=250000)
add_library(SQLite::SQLite3 ALIAS sqlite3)

# PostgreSQL's client library is loaded when a book on a server is opened; its headers serve every system.
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/include)
file(CREATE_LINK /usr/include/postgresql ${PROJECT_BINARY_DIR}/include/postgresql SYMBOLIC)
set(PostgreSQL_INCLUDE_DIRS ${PROJECT_BINARY_DIR}/include/postgresql)
if(NOT KPTABLES_KPBOOK AND NOT KPTABLES_TESTS)
  return()
endif()

library(utf8proc utf8proc/utf8proc.c)
target_include_directories(utf8proc SYSTEM PUBLIC ${sources}/utf8proc)
target_compile_definitions(utf8proc PUBLIC UTF8PROC_STATIC)
add_library(PkgConfig::UTF8PROC ALIAS utf8proc)

set(expat expat/expat/lib)
library(expat ${expat}/xmlparse.c ${expat}/xmlrole.c ${expat}/xmltok.c)
file(WRITE ${PROJECT_BINARY_DIR}/expat/expat_config.h
     "#define BYTEORDER 1234\n#define HAVE_MEMMOVE 1\n#define XML_CONTEXT_BYTES 1024\n#define XML_DTD 1\n#define XML_NS 1\n")
target_include_directories(expat SYSTEM PUBLIC ${sources}/${expat} PRIVATE ${PROJECT_BINARY_DIR}/expat)
target_compile_definitions(expat PUBLIC XML_STATIC)
add_library(PkgConfig::EXPAT ALIAS expat)

library(z zlib/adler32.c zlib/compress.c zlib/crc32.c zlib/deflate.c zlib/gzclose.c zlib/gzlib.c zlib/gzread.c
        zlib/gzwrite.c zlib/infback.c zlib/inffast.c zlib/inflate.c zlib/inftrees.c zlib/trees.c zlib/uncompr.c
        zlib/zutil.c)
target_include_directories(z SYSTEM PUBLIC ${sources}/zlib)
add_library(ZLIB::ZLIB ALIAS z)

set(minizip zlib/contrib/minizip)
library(minizip ${minizip}/ioapi.c ${minizip}/iowin32.c ${minizip}/unzip.c ${minizip}/zip.c)
file(CREATE_LINK ${sources}/${minizip} ${PROJECT_BINARY_DIR}/include/minizip SYMBOLIC)
target_include_directories(minizip SYSTEM PUBLIC ${PROJECT_BINARY_DIR}/include)
target_link_libraries(minizip PUBLIC z)
add_library(PkgConfig::MINIZIP ALIAS minizip)

file(GLOB xlsxwriter RELATIVE ${sources} ${sources}/libxlsxwriter/src/*.c
     ${sources}/libxlsxwriter/third_party/tmpfileplus/tmpfileplus.c ${sources}/libxlsxwriter/third_party/md5/md5.c)
library(xlsxwriter ${xlsxwriter})
target_include_directories(xlsxwriter SYSTEM PUBLIC ${sources}/libxlsxwriter/include PRIVATE ${sources}/${minizip})
target_compile_definitions(xlsxwriter PRIVATE USE_SYSTEM_MINIZIP)
target_link_libraries(xlsxwriter PRIVATE minizip)

# Headers alone serve every system.
foreach(headers IN ITEMS CLI nlohmann)
  file(CREATE_LINK /usr/include/${headers} ${PROJECT_BINARY_DIR}/include/${headers} SYMBOLIC)
endforeach()
foreach(target IN ITEMS CLI11::CLI11 nlohmann_json::nlohmann_json)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/include)
endforeach()
