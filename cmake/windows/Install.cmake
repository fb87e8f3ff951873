# What the zip for Windows has, of both widths; ./package-windows puts it together.
add_custom_target(kpTablesWindowsPackage)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  add_dependencies(kpTablesWindowsPackage kpbook)
  install(TARGETS kpbook RUNTIME DESTINATION . COMPONENT windows)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/src/kpbook/locale DESTINATION . COMPONENT windows)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include DESTINATION . COMPONENT windows FILES_MATCHING PATTERN "*.h")
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION . COMPONENT windows FILES_MATCHING PATTERN "*.md")
endif()
