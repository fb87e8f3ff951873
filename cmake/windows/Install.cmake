# What the zip for Windows has, of both widths; ./package-windows puts it together.
add_custom_target(kpTablesWindowsPackage)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  add_dependencies(kpTablesWindowsPackage kpbook)
  install(TARGETS kpbook RUNTIME DESTINATION . COMPONENT windows)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/src/kpbook/locale DESTINATION . COMPONENT windows)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include DESTINATION . COMPONENT windows FILES_MATCHING PATTERN "*.h")
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION . COMPONENT windows FILES_MATCHING PATTERN "*.md")
endif()

# The COM server, whose registration writes its type library.
add_dependencies(kpTablesWindowsPackage kpTablesCom)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  install(TARGETS kpTablesCom RUNTIME DESTINATION x64 COMPONENT windows)
  install(FILES ${PROJECT_BINARY_DIR}/src/com/kpTables.manifest DESTINATION . COMPONENT windows)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/com DESTINATION examples COMPONENT windows)
else()
  install(TARGETS kpTablesCom RUNTIME DESTINATION x86 COMPONENT windows)
endif()
