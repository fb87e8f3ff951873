# The package that find_package(kpTables) finds: the component kpTables::kpTables, books kpTables::engines, and
# kpTables::bookkeeping. The same for pkg-config, and as Debian packages (cpack).
include(CMakePackageConfigHelpers)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME dev)
set(cmakeFiles ${CMAKE_INSTALL_LIBDIR}/cmake/kpTables)
install(TARGETS kpTables kpTablesText kpTablesFunctions kpTablesSql kpTablesSchema kpTablesEngineCommon kpTablesPostgres kpTablesSqlite kpTablesEngines kpTablesBookkeeping
        EXPORT kpTablesTargets)
install(DIRECTORY include/kpTables DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(EXPORT kpTablesTargets NAMESPACE kpTables:: DESTINATION ${cmakeFiles})
configure_package_config_file(cmake/kpTablesConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/kpTablesConfig.cmake
                              INSTALL_DESTINATION ${cmakeFiles})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/kpTablesConfigVersion.cmake
                                 VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kpTablesConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/kpTablesConfigVersion.cmake
        DESTINATION ${cmakeFiles})
# The installed folder may be moved.
file(RELATIVE_PATH upToPrefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" upToPrefix ${upToPrefix})
configure_file(cmake/kpTables.pc.in ${CMAKE_CURRENT_BINARY_DIR}/kpTables.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kpTables.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(KPTABLES_KPBOOK)
  install(TARGETS kpbook COMPONENT kpbook)
endif()

# cpack --config build/release/CPackConfig.cmake makes libkptables-dev and kpbook.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kptables)
set(CPACK_PACKAGE_CONTACT "the kpTables developers")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libkptables-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libsqlite3-dev, libstdc++-12-dev")
set(CPACK_DEBIAN_DEV_DESCRIPTION "Data layer of an inventory accounting application: the C++ library")
set(CPACK_DEBIAN_KPBOOK_PACKAGE_NAME kpbook)
set(CPACK_DEBIAN_KPBOOK_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_KPBOOK_PACKAGE_RECOMMENDS "libxlsxwriter4")
set(CPACK_DEBIAN_KPBOOK_DESCRIPTION "Keeps a trading firm's stock in books: the command line of kpTables")
include(CPack)
