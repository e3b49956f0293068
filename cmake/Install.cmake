# SPDX-License-Identifier: MIT
# Install rules for the headers, the library, the CMake package and the pkg-config file. The component `runtime` has
# the shared library for existing programs. The component `development` has all other files.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

get_target_property(QORTK_TYPE qortk TYPE)
set(QORTK_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/qortk)

install(TARGETS qortk EXPORT qortkTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/qor
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h")
install(EXPORT qortkTargets NAMESPACE qortk::
    DESTINATION ${QORTK_CMAKE_DIR} COMPONENT development)

write_basic_package_version_file(qortkConfigVersion.cmake COMPATIBILITY SameMajorVersion)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/qortkConfig.cmake.in qortkConfig.cmake
    INSTALL_DESTINATION ${QORTK_CMAKE_DIR})
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/qortkConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/qortkConfigVersion.cmake
    DESTINATION ${QORTK_CMAKE_DIR} COMPONENT development)

# The pkg-config file is written during the installation, because `cmake --install` can change the prefix. CPack
# installs to a temporary directory; its packages have the prefix of the configuration.
foreach(id IN ITEMS LIBDIR INCLUDEDIR)
    set(QORTK_PC_${id} "${CMAKE_INSTALL_${id}}")
    if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_${id}}")
        set(QORTK_PC_${id} "\${prefix}/${CMAKE_INSTALL_${id}}")
    endif()
endforeach()
set(QORTK_PC_CFLAGS "")
set(QORTK_PC_LIBS "")
if(QORTK_TYPE STREQUAL "STATIC_LIBRARY")
    set(QORTK_PC_CFLAGS " -DQORTK_STATIC")
    set(QORTK_PC_LIBS " -lstdc++ -pthread")
endif()
set(QORTK_PC_PREFIX "@QORTK_PC_PREFIX@")
configure_file(${CMAKE_CURRENT_LIST_DIR}/qortk.pc.in qortk.pc.in @ONLY)
install(CODE "
    set(QORTK_PC_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
    if(QORTK_PC_PREFIX MATCHES /_CPack_Packages/)
        set(QORTK_PC_PREFIX \"${CMAKE_INSTALL_PREFIX}\")
    endif()
    configure_file(\"${CMAKE_CURRENT_BINARY_DIR}/qortk.pc.in\" \"${CMAKE_CURRENT_BINARY_DIR}/qortk.pc\" @ONLY)"
    COMPONENT development)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qortk.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
