# Runs HOST on DOCUMENT and with a copy of SETTINGS, if these are given, with the commands in the file
# INPUT, in the empty folder FOLDER, and compares the exit status with STATUS and, where EXPECTED names a file, what is printed with that, times aside.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
if(SETTINGS)
    configure_file(${SETTINGS} ${FOLDER}/settings.xml COPYONLY)
endif()
if(DOCUMENT)
    # With its template, if it has one.
    get_filename_component(folder ${DOCUMENT} DIRECTORY)
    file(GLOB documents ${folder}/*.xml)
    file(COPY ${documents} DESTINATION ${FOLDER})
    get_filename_component(document ${DOCUMENT} NAME)
endif()
execute_process(COMMAND ${HOST} --echo --log host.log --config settings.xml ${document}
    INPUT_FILE ${INPUT} WORKING_DIRECTORY ${FOLDER}
    OUTPUT_FILE output.txt ERROR_VARIABLE error RESULT_VARIABLE status)
file(READ ${FOLDER}/output.txt output)
file(REMOVE_RECURSE ${FOLDER})
if(NOT status STREQUAL STATUS OR NOT error STREQUAL "")
    message(FATAL_ERROR "Ended with ${status} and not ${STATUS}\n${output}${error}")
endif()
string(REGEX REPLACE "[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+\\.[0-9]+" "TIME" output "${output}")
if(EXPECTED)
    file(READ ${EXPECTED} expected)
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "Printed, and not what ${EXPECTED} holds:\n${output}")
    endif()
endif()
