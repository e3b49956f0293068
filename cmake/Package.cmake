# What `cpack` gives: an archive of all, and on Debian the packages libqortk1 and libqortk-dev. The latter
# take the system's own folders if CMAKE_INSTALL_PREFIX is /usr, as in the preset `package`.

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "toolkit library for desktop applications")
set(CPACK_PACKAGE_VENDOR "qortk developers")
set(CPACK_PACKAGE_CONTACT "qortk developers <qortk@localhost>")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_IGNORE_FILES "/\\\\.git/;${PROJECT_SOURCE_DIR}/build;${PROJECT_SOURCE_DIR}/out/")

set(CPACK_GENERATOR TGZ)
find_program(QORTK_SHLIBDEPS dpkg-shlibdeps)
mark_as_advanced(QORTK_SHLIBDEPS)
if(QORTK_SHLIBDEPS)
    list(APPEND CPACK_GENERATOR DEB)
endif()

set(QORTK_RUNTIME_PACKAGE libqortk${PROJECT_VERSION_MAJOR})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
if(CMAKE_LIBRARY_ARCHITECTURE AND CMAKE_INSTALL_LIBDIR MATCHES "/${CMAKE_LIBRARY_ARCHITECTURE}$")
    set(CPACK_DEBIAN_PACKAGE_MULTIARCH same)
endif()
set(QORTK_DESCRIPTION
"XML documents with a parser, a writer and a template validator, an
embeddable text console, a typed configuration stored as XML, a text log,
images, vectors and matrices, checksums, a state machine, threads and
locks, and helpers for files, numbers and time stamps.")

set(CPACK_COMPONENTS_ALL development)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libqortk-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"${QORTK_DESCRIPTION}
.
This package has what programs are compiled with.")

if(QORTK_TYPE STREQUAL "SHARED_LIBRARY")
    list(APPEND CPACK_COMPONENTS_ALL runtime)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${QORTK_RUNTIME_PACKAGE} (= ${PROJECT_VERSION})")
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${QORTK_RUNTIME_PACKAGE})
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
    set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
"${QORTK_DESCRIPTION}
.
This package has what programs need when they run.")
endif()

if(WIN32)
    set(CPACK_GENERATOR ZIP)
endif()

include(CPack)
