# SPDX-License-Identifier: MIT
# Runs HARBOUR without a screen in the empty folder FOLDER, next to the scenes beside this file, with each line of
# COMMANDS as a command of its console, and compares its output and the checksum of its last frame with EXPECTED.
file(REMOVE_RECURSE ${FOLDER})
file(GLOB scenes ${CMAKE_CURRENT_LIST_DIR}/*.xml)
file(COPY ${scenes} DESTINATION ${FOLDER})
file(STRINGS ${COMMANDS} commands)
set(arguments)
foreach(command IN LISTS commands)
    list(APPEND arguments --run ${command})
endforeach()
set(ENV{SDL_VIDEODRIVER} dummy)
execute_process(COMMAND ${HARBOUR} --frames 150 --time 21.2 --screenshot frame.tga ${arguments} scene.xml
    WORKING_DIRECTORY ${FOLDER} OUTPUT_VARIABLE output ERROR_VARIABLE error RESULT_VARIABLE status)
# The same by day, without the console, and in another size.
execute_process(COMMAND ${HARBOUR} --frames 400 --time 8 --screenshot day.tga --run "settings-set window/width 320"
    --run "settings-set window/height 180" saved.xml WORKING_DIRECTORY ${FOLDER} OUTPUT_VARIABLE day)
string(APPEND output "${day}")
file(READ ${EXPECTED} expected)
if(NOT status EQUAL 1 OR NOT error STREQUAL "" OR NOT output STREQUAL expected)
    message(FATAL_ERROR "Ended with ${status}, and did not print the text of ${EXPECTED}:\n${output}${error}")
endif()
# The screenshot is what the checksum is about, and the scene was saved.
file(SIZE ${FOLDER}/frame.tga size)
file(READ ${FOLDER}/saved.xml saved)
if(NOT size EQUAL 691218 OR NOT saved MATCHES "<!-- One comment -->.*<name>Comet</name>.*<route>ferry</route>")
    message(FATAL_ERROR "The screenshot has ${size} bytes, and the saved scene is:\n${saved}")
endif()
file(REMOVE_RECURSE ${FOLDER})
