# Builds with clang, which are for checking, compile the standard headers once for all libraries: reading them takes most
# of a source's time. Builds with g++ do without them, so that every file keeps including what it uses.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  target_precompile_headers(kpTablesText PRIVATE
    <algorithm> <array> <chrono> <cstdint> <cstdio> <functional> <map> <memory> <optional> <set> <span> <string>
    <string_view> <tuple> <type_traits> <unordered_map> <utility> <variant> <vector>)
  foreach(target IN ITEMS kpTables kpTablesFunctions kpTablesSql kpTablesEngineCommon kpTablesSqlite kpTablesEngines
                          kpTablesBookkeeping kpbookParts)
    target_precompile_headers(${target} REUSE_FROM kpTablesText)
  endforeach()
  if(TARGET kpbench)
    target_precompile_headers(kpbench REUSE_FROM kpTablesText)
  endif()
endif()
