# Builds with sanitizers compile the standard headers once for all libraries: reading them takes most of a source's time.
# The release build does without them, so that every file keeps including what it uses.
if(KPTABLES_SANITIZE)
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
