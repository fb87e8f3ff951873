# Run by CPack after it has made the zip. CPack takes the files in the order in which their folders list them, and notes their
# owner and when they were last read; the zip is to have the same bytes wherever it is made.
execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/stable-zip ${CPACK_PACKAGE_FILES} COMMAND_ERROR_IS_FATAL ANY)
