# Flags that every target of this project is built with: link kpTablesFlags privately.
add_library(kpTablesFlags INTERFACE)
target_compile_options(kpTablesFlags INTERFACE -Wall -Wextra -Wpedantic $<$<BOOL:${KPTABLES_WERROR}>:-Werror>)
# g++ 12 mistakes the optimized code of "text" + std::string for an overlapping copy, and that of an empty
# std::optional<std::string> for one that is read, both in the standard library's headers.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(kpTablesFlags INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()
# Position-independent code calls its own functions directly, as that of a program does.
if(KPTABLES_SHARED)
  target_compile_options(kpTablesFlags INTERFACE -fno-semantic-interposition)
endif()
if(KPTABLES_SANITIZE)
  target_compile_options(kpTablesFlags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                 -fno-omit-frame-pointer)
  # Without -no-pie a program relocates a million pointers of the sanitizers before main begins.
  target_link_options(kpTablesFlags INTERFACE -fsanitize=address,undefined -no-pie)
endif()
if(KPTABLES_SANITIZE_THREADS)
  target_compile_options(kpTablesFlags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(kpTablesFlags INTERFACE -fsanitize=thread)
endif()
# The coverage that guides a fuzzer. Beside the tests, counters of the parts that were reached, which slow them little; in a
# build for fuzzers alone also what is compared, with the sanitizers or, to try several times as much, without.
option(KPTABLES_FUZZ_SANITIZE "Build fuzzers alone with AddressSanitizer and UndefinedBehaviorSanitizer" ON)
if(KPTABLES_FUZZ AND KPTABLES_SANITIZE)
  target_compile_options(kpTablesFlags INTERFACE -fsanitize-coverage=inline-8bit-counters,pc-table)
elseif(KPTABLES_FUZZ)
  if(KPTABLES_FUZZ_SANITIZE)
    set(instrumented -O1 -gline-tables-only -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  else()
    set(instrumented -O2 -gline-tables-only -fsanitize=fuzzer-no-link)
  endif()
  target_compile_options(kpTablesFlags INTERFACE ${instrumented})
  target_link_options(kpTablesFlags INTERFACE ${instrumented})
endif()
