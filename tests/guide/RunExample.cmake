# Runs PROGRAM in the empty folder FOLDER and holds what it prints against the file EXPECTED.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
execute_process(COMMAND ${PROGRAM} WORKING_DIRECTORY ${FOLDER}
    OUTPUT_VARIABLE output RESULT_VARIABLE status)
file(READ ${EXPECTED} expected)
if(NOT status EQUAL 0 OR NOT output STREQUAL expected)
    message(FATAL_ERROR "Ended with ${status}, and printed, not what ${EXPECTED} holds:\n${output}")
endif()
