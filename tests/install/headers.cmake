# Every public header compiles by itself.
file(GLOB headers RELATIVE ${INCLUDE} ${INCLUDE}/kpTables/*.h ${INCLUDE}/kpTables/bookkeeping/*.h)
if(NOT headers)
  message(FATAL_ERROR "no headers in ${INCLUDE}")
endif()
file(MAKE_DIRECTORY ${SCRATCH})
foreach(header ${headers})
  # Twice: an include guard must hold too.
  file(WRITE ${SCRATCH}/alone.cpp "#include \"${header}\"\n#include \"${header}\"\n")
  execute_process(COMMAND ${COMPILER} -std=c++20 -Wall -Wextra -Wpedantic -Werror -I${INCLUDE} -fsyntax-only
                          ${SCRATCH}/alone.cpp
                  RESULT_VARIABLE result ERROR_VARIABLE messages)
  if(NOT result EQUAL 0)
    message(SEND_ERROR "${header}:\n${messages}")
  endif()
endforeach()
