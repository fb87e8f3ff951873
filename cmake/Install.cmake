# The package that find_package(kpTables) finds: the component kpTables::kpTables, books kpTables::engines, and
# kpTables::bookkeeping.
include(CMakePackageConfigHelpers)
install(TARGETS kpTables kpTablesText kpTablesFunctions kpTablesSql kpTablesSchema kpTablesEngineCommon kpTablesSqlite kpTablesEngines kpTablesBookkeeping
        EXPORT kpTablesTargets)
install(TARGETS kpbook)
install(DIRECTORY include/kpTables DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(EXPORT kpTablesTargets NAMESPACE kpTables:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kpTables)
configure_package_config_file(cmake/kpTablesConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/kpTablesConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kpTables)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/kpTablesConfigVersion.cmake
                                 VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kpTablesConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/kpTablesConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kpTables)
