# SPDX-License-Identifier: MIT
# Runs PROGRAM, under EMULATOR if that is set, in the empty directory FOLDER and compares its output with the
# file EXPECTED. Line ends may be those of Windows.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
execute_process(COMMAND ${EMULATOR} ${PROGRAM} WORKING_DIRECTORY ${FOLDER}
    OUTPUT_VARIABLE output RESULT_VARIABLE status)
string(REPLACE "\r\n" "\n" output "${output}")
file(READ ${EXPECTED} expected)
if(WINDOWS)
    # The system's own error texts differ.
    foreach(text IN ITEMS output expected)
        string(REGEX REPLACE "(E Unable [^\n]*': )[^\n]*" "\\1TEXT" ${text} "${${text}}")
    endforeach()
endif()
if(NOT status EQUAL 0 OR NOT output STREQUAL expected)
    message(FATAL_ERROR "Ended with ${status}, and printed, not what ${EXPECTED} holds:\n${output}")
endif()
