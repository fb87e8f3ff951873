# What the zip for Windows has, of both widths; ./package-windows builds it and lets CPack put it together.
add_custom_target(kpTablesWindowsPackage)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(width x64)
  set(machine i386:x86-64)
  set(programs .)
  add_dependencies(kpTablesWindowsPackage kpTablesTypeLibrary)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include DESTINATION . COMPONENT windows FILES_MATCHING PATTERN "*.h")
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION . COMPONENT windows FILES_MATCHING PATTERN "*.md")
  install(FILES ${PROJECT_BINARY_DIR}/src/com/kpTables.manifest DESTINATION . COMPONENT windows)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/com DESTINATION examples COMPONENT windows)
  install(FILES CHANGELOG.md README.md README.zh.md DESTINATION . COMPONENT windows)
else()
  set(width x86)
  set(machine i386)
  set(programs x86)
endif()

# kpbook, with its messages in other languages beside it.
add_dependencies(kpTablesWindowsPackage kpbook)
install(TARGETS kpbook RUNTIME DESTINATION ${programs} COMPONENT windows)
install(DIRECTORY ${PROJECT_BINARY_DIR}/src/kpbook/locale DESTINATION ${programs} COMPONENT windows)

# The COM server, and for hosts in C and C++ its import library.
add_dependencies(kpTablesWindowsPackage kpTablesCom)
install(TARGETS kpTablesCom RUNTIME DESTINATION ${width} COMPONENT windows)
find_program(KPTABLES_DLLTOOL ${mingw}-dlltool REQUIRED)
mark_as_advanced(KPTABLES_DLLTOOL)
set(definition ${PROJECT_SOURCE_DIR}/src/com/library/${width}.def)
set(library ${PROJECT_BINARY_DIR}/src/com/kpTables.lib)
# Named without its folder, which would become part of its symbols' names.
add_custom_command(
  OUTPUT ${library}
  COMMAND ${KPTABLES_DLLTOOL} --machine ${machine} --kill-at --temp-prefix kpTables --input-def ${definition} --output-lib kpTables.lib
  DEPENDS ${definition}
  WORKING_DIRECTORY ${PROJECT_BINARY_DIR}/src/com
  VERBATIM)
add_custom_target(kpTablesImportLibrary DEPENDS ${library})
add_dependencies(kpTablesWindowsPackage kpTablesImportLibrary)
install(FILES ${library} DESTINATION lib/${width} COMPONENT windows)
install(FILES ${definition} DESTINATION lib/${width} RENAME kpTables.def COMPONENT windows)

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  return()
endif()

# cpack --config build/windows-x64/CPackConfig.cmake makes the zip of both builds, which lie side by side.
cmake_path(GET PROJECT_BINARY_DIR PARENT_PATH builds)
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME kpTables)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME kpTables-${PROJECT_VERSION}-windows)
set(CPACK_PACKAGE_DIRECTORY ${builds})
set(CPACK_INSTALL_CMAKE_PROJECTS "")
foreach(build IN ITEMS windows-x64 windows-x86)
  list(APPEND CPACK_INSTALL_CMAKE_PROJECTS ${builds}/${build} kpTables windows /)
endforeach()
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
# For the scripts.
set(CPACK_KPTABLES_WINE ${CMAKE_CURRENT_LIST_DIR}/run-in-wine)
set(CPACK_KPTABLES_TYPE_LIBRARY ${PROJECT_BINARY_DIR}/src/com/kpTablesTypeLibrary.exe)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/AddMadeFiles.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/StableZip.cmake)
include(CPack)
