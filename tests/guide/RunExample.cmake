# SPDX-License-Identifier: MIT
# Runs PROGRAM, under EMULATOR if that is set, in the empty directory FOLDER and compares its output, and the
# records that it writes to standard error, with the file EXPECTED. Line ends may be those of Windows, where
# standard error is not compared, because an emulator may write to it.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
set(errors ERROR_VARIABLE output)
if(WINDOWS)
    set(errors ERROR_QUIET)
endif()
execute_process(COMMAND ${EMULATOR} ${PROGRAM} WORKING_DIRECTORY ${FOLDER}
    OUTPUT_VARIABLE output ${errors} RESULT_VARIABLE status)
string(REPLACE "\r\n" "\n" output "${output}")
string(REGEX REPLACE "([XEID]) [0-9-]+ [0-9:.]+ " "\\1 2026-05-04 09:15:00.123 " output "${output}")
file(READ ${EXPECTED} expected)
if(WINDOWS)
    string(REGEX REPLACE "[XEID] 2026-[^\n]*\n" "" expected "${expected}")
    # The system's own error texts differ.
    foreach(text IN ITEMS output expected)
        string(REGEX REPLACE "(E Unable [^\n]*': )[^\n]*" "\\1TEXT" ${text} "${${text}}")
    endforeach()
endif()
if(NOT status EQUAL 0 OR NOT output STREQUAL expected)
    message(FATAL_ERROR "Ended with ${status}, and printed, not what ${EXPECTED} holds:\n${output}")
endif()
