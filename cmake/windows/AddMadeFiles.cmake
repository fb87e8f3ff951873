# Run by CPack before it makes the zip: adds what is made of the installed files.
set(folder ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
# Wine's own functions write the type libraries.
execute_process(COMMAND ${CPACK_KPTABLES_WINE} ${CPACK_KPTABLES_TYPE_LIBRARY} ${folder}/lib/x64 ${folder}/lib/x86
                COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE files RELATIVE ${folder} ${folder}/*)
set(sums "")
foreach(file IN LISTS files)
  file(SHA256 ${folder}/${file} sum)
  string(APPEND sums "${sum}  ${file}\n")
endforeach()
file(WRITE ${folder}/SHA256SUMS ${sums})
