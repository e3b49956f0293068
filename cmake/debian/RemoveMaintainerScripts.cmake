# SPDX-License-Identifier: MIT
# Removes the scripts that call ldconfig, which CPack adds to every package with a shared library. The trigger of the
# package calls ldconfig once per installation of any number of packages.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    if(NOT package MATCHES "/libqortk[0-9]+_[^/]*\\.deb$")
        continue()
    endif()
    set(directory ${CPACK_TOPLEVEL_DIRECTORY}/unpacked)
    file(REMOVE_RECURSE ${directory})
    foreach(command IN ITEMS "--raw-extract;${package};${directory}"
            "--root-owner-group;--build;${directory};${package}")
        execute_process(COMMAND dpkg-deb ${command} RESULT_VARIABLE result OUTPUT_QUIET)
        if(NOT result EQUAL 0)
            message(FATAL_ERROR "Cannot repack '${package}': dpkg-deb ${command} failed")
        endif()
        file(REMOVE ${directory}/DEBIAN/postinst ${directory}/DEBIAN/postrm)
    endforeach()
endforeach()
