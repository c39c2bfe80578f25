# Runs HOST with LIBRARY and compares what it prints with the file EXPECTED.
execute_process(COMMAND ${HOST} ${LIBRARY}
    RESULT_VARIABLE exit_code OUTPUT_VARIABLE transcript ERROR_VARIABLE errors)
message("${transcript}")
if(NOT exit_code EQUAL 0 OR NOT errors STREQUAL "")
    message(FATAL_ERROR "The host ended with ${exit_code}: ${errors}")
endif()
file(READ ${EXPECTED} expected)
if(NOT transcript STREQUAL expected)
    message(FATAL_ERROR "This is not the transcript in ${EXPECTED}.")
endif()
