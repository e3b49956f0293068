# CPack adds scripts that call ldconfig to every package with a shared library. The package's trigger does
# the same once for all packages of an installation, so the scripts are removed.
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
