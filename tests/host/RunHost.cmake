# SPDX-License-Identifier: MIT
# Runs HOST with the commands of the file INPUT in the new directory FOLDER. With DOCUMENT it works on
# a copy of that file, and with SETTINGS on a copy of those settings. The test fails unless the exit
# status is STATUS and the output is the content of the file EXPECTED, apart from times.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
if(SETTINGS)
    configure_file(${SETTINGS} ${FOLDER}/settings.xml COPYONLY)
endif()
if(DOCUMENT)
    # Templates are beside their documents.
    get_filename_component(directory ${DOCUMENT} DIRECTORY)
    file(GLOB documents ${directory}/*.xml)
    file(COPY ${documents} DESTINATION ${FOLDER})
    get_filename_component(document ${DOCUMENT} NAME)
endif()
execute_process(COMMAND ${EMULATOR} ${HOST} --echo --log host.log --config settings.xml ${document}
    INPUT_FILE ${INPUT} WORKING_DIRECTORY ${FOLDER}
    OUTPUT_FILE output.txt ERROR_VARIABLE error RESULT_VARIABLE status)
file(READ ${FOLDER}/output.txt output)
string(REPLACE "\r\n" "\n" output "${output}")
file(REMOVE_RECURSE ${FOLDER})
if(NOT status STREQUAL STATUS OR NOT error STREQUAL "")
    message(FATAL_ERROR "The exit status is ${status} instead of ${STATUS}\n${output}${error}")
endif()
string(REGEX REPLACE "[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+\\.[0-9]+" "TIME" output "${output}")
file(READ ${EXPECTED} expected)
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "The output differs from ${EXPECTED}:\n${output}")
endif()
