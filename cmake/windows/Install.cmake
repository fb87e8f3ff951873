# What the zip for Windows has, of both widths; ./package-windows puts it together.
add_custom_target(kpTablesWindowsPackage)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(width x64)
  set(machine i386:x86-64)
  add_dependencies(kpTablesWindowsPackage kpbook kpTablesTypeLibrary)
  install(TARGETS kpbook RUNTIME DESTINATION . COMPONENT windows)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/src/kpbook/locale DESTINATION . COMPONENT windows)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include DESTINATION . COMPONENT windows FILES_MATCHING PATTERN "*.h")
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION . COMPONENT windows FILES_MATCHING PATTERN "*.md")
  install(FILES ${PROJECT_BINARY_DIR}/src/com/kpTables.manifest DESTINATION . COMPONENT windows)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/com DESTINATION examples COMPONENT windows)
else()
  set(width x86)
  set(machine i386)
endif()

# The COM server, and for hosts in C and C++ its import library.
add_dependencies(kpTablesWindowsPackage kpTablesCom)
install(TARGETS kpTablesCom RUNTIME DESTINATION ${width} COMPONENT windows)
find_program(KPTABLES_DLLTOOL ${mingw}-dlltool REQUIRED)
mark_as_advanced(KPTABLES_DLLTOOL)
set(definition ${PROJECT_SOURCE_DIR}/src/com/library/${width}.def)
set(library ${PROJECT_BINARY_DIR}/src/com/kpTables.lib)
add_custom_command(
  OUTPUT ${library}
  COMMAND ${KPTABLES_DLLTOOL} --machine ${machine} --kill-at --temp-prefix kpTables --input-def ${definition} --output-lib ${library}
  DEPENDS ${definition}
  WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
  VERBATIM)
add_custom_target(kpTablesImportLibrary DEPENDS ${library})
add_dependencies(kpTablesWindowsPackage kpTablesImportLibrary)
install(FILES ${library} DESTINATION lib/${width} COMPONENT windows)
install(FILES ${definition} DESTINATION lib/${width} RENAME kpTables.def COMPONENT windows)
