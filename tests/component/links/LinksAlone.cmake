# Links every object of the component's library and of the ground floor's into a program with the C++ runtime's libraries
# alone, runs it, and looks at what it needs at run time.
set(program ${WORK}/linksAlone)
file(REMOVE ${program})
execute_process(
  COMMAND ${COMPILER} -std=c++20 -I${INCLUDE} ${MAIN} -Wl,--whole-archive ${LIBRARIES} -Wl,--no-whole-archive
          -Wl,--no-undefined -nodefaultlibs -lstdc++ -lm -lgcc_s -lgcc -lc -o ${program}
  RESULT_VARIABLE failed
  ERROR_VARIABLE messages)
if(failed)
  message(FATAL_ERROR "the component needs more than the C++ runtime:\n${messages}")
endif()

execute_process(COMMAND ${program} RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "the program ends with ${failed}")
endif()

execute_process(COMMAND ${READELF} --dynamic ${program} OUTPUT_VARIABLE dynamic RESULT_VARIABLE failed)
string(REGEX MATCHALL "NEEDED[^\n]*\\[[^]\n]*\\]" entries "${dynamic}")
if(failed OR NOT entries)
  message(FATAL_ERROR "the needed libraries cannot be read:\n${dynamic}")
endif()
foreach(entry IN LISTS entries)
  string(REGEX REPLACE ".*\\[(.*)\\]" "\\1" library "${entry}")
  if(NOT library MATCHES "^(libstdc\\+\\+|libm|libgcc_s|libc|ld-linux[-_a-z0-9]*)\\.so")
    message(FATAL_ERROR "the component needs ${library}")
  endif()
endforeach()
