# libkptables: everything that the static libraries have, of the same objects.
set(parts kpTables kpTablesText kpTablesPlatform kpTablesFunctions kpTablesSql kpTablesSchema kpTablesEngineCommon kpTablesOdbc kpTablesPostgres kpTablesSqlite kpTablesEngines
          kpTablesBookkeeping)
list(TRANSFORM parts REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
add_library(kpTablesShared SHARED ${objects})
# The name of the file begins with the number that changes when programs have to be built anew.
set_target_properties(kpTablesShared PROPERTIES OUTPUT_NAME kptables EXPORT_NAME shared LINKER_LANGUAGE CXX SOVERSION 1
                      VERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH})
target_include_directories(kpTablesShared INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                                                    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_compile_features(kpTablesShared INTERFACE cxx_std_20)
find_package(SQLite3 REQUIRED)
target_link_libraries(kpTablesShared PRIVATE SQLite::SQLite3)
target_link_options(kpTablesShared PRIVATE LINKER:-Bsymbolic-functions,-z,defs)
add_library(kpTables::shared ALIAS kpTablesShared)
