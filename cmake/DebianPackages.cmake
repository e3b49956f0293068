# SPDX-License-Identifier: MIT
# The Debian packages: libqortk1, libqortk-dev and, if scripts/docs.sh has built the guide, libqortk-doc. The preset
# `package` enables QORTK_DEBIAN_PACKAGES and installs to /usr.

list(APPEND CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The changelog has the date of the last commit, so that builds of the same sources are identical.
execute_process(COMMAND git -C ${PROJECT_SOURCE_DIR} log -1 --format=%aD
    OUTPUT_VARIABLE QORTK_CHANGE_DATE OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT QORTK_CHANGE_DATE)
    string(TIMESTAMP QORTK_CHANGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
endif()
set(QORTK_DEBIAN_DIR ${CMAKE_CURRENT_BINARY_DIR}/debian)
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/copyright.in ${QORTK_DEBIAN_DIR}/copyright @ONLY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in ${QORTK_DEBIAN_DIR}/changelog.Debian @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${QORTK_DEBIAN_DIR}/changelog COPYONLY)
execute_process(WORKING_DIRECTORY ${QORTK_DEBIAN_DIR}
    COMMAND gzip --best --no-name --force changelog changelog.Debian)

# CPack puts CPACK_PACKAGE_DESCRIPTION_SUMMARY before each description.
set(QORTK_DEBIAN_DESCRIPTION
"XML documents with a parser, a writer and a template validator, an
embeddable text console, a typed configuration stored as XML, a text log,
images, vectors and matrices, checksums, a state machine, threads and
locks, and helpers for files, numbers and time stamps.")
function(qortk_install_debian_documents component name)
    install(FILES ${QORTK_DEBIAN_DIR}/copyright ${QORTK_DEBIAN_DIR}/changelog.gz
            ${QORTK_DEBIAN_DIR}/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${name} COMPONENT ${component})
endfunction()

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libqortk-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "${QORTK_DEBIAN_DESCRIPTION}
.
This package contains the headers and build files for programs.")
qortk_install_debian_documents(development libqortk-dev)

if(QORTK_TYPE STREQUAL "SHARED_LIBRARY")
    set(QORTK_RUNTIME_PACKAGE libqortk${PROJECT_VERSION_MAJOR})
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${QORTK_RUNTIME_PACKAGE} (= ${PROJECT_VERSION})")
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${QORTK_RUNTIME_PACKAGE})
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/shlibs.in ${QORTK_DEBIAN_DIR}/shlibs @ONLY)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
        ${QORTK_DEBIAN_DIR}/shlibs ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)
    set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian/RemoveMaintainerScripts.cmake)
    set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "${QORTK_DEBIAN_DESCRIPTION}
.
This package contains the shared library.")
    qortk_install_debian_documents(runtime ${QORTK_RUNTIME_PACKAGE})
    if(CMAKE_LIBRARY_ARCHITECTURE AND CMAKE_INSTALL_LIBDIR MATCHES "/${CMAKE_LIBRARY_ARCHITECTURE}$")
        set(CPACK_DEBIAN_RUNTIME_PACKAGE_MULTIARCH same)
        set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_MULTIARCH same)
    endif()
endif()

if(EXISTS ${PROJECT_SOURCE_DIR}/build/docs/html/index.html)
    list(APPEND CPACK_COMPONENTS_ALL documentation)
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME libqortk-doc)
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
    set(CPACK_DEBIAN_DOCUMENTATION_DESCRIPTION "${QORTK_DEBIAN_DESCRIPTION}
.
This package contains the guide, the reference and example programs.")
    set(directory ${CMAKE_INSTALL_DATAROOTDIR}/doc/libqortk-doc)
    qortk_install_debian_documents(documentation libqortk-doc)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/docs/html DESTINATION ${directory}
        COMPONENT documentation PATTERN "*.md5" EXCLUDE PATTERN "*.map" EXCLUDE)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${directory} COMPONENT documentation)
endif()
