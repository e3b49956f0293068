# SPDX-License-Identifier: MIT
# Compiler and linker options of all targets. They do not affect projects that use the library.

set(QORTK_WARNINGS
    -Wall -Wextra -Wpedantic
    -Wshadow            # a name that hides another is easily confused with it
    -Wconversion        # narrowing needs an explicit cast
    -Wnon-virtual-dtor  # deleting through such a base class is undefined
    -Wold-style-cast)   # a C++ cast shows the kind of conversion

# The flags of Debian's packages. -U comes first, because some compilers predefine the macro.
set(QORTK_HARDENING -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
    list(APPEND QORTK_HARDENING -fcf-protection)
endif()
# Options of Microsoft's compiler and of clang-cl.
set(QORTK_MSVC_OPTIONS
    /W4
    /utf-8          # encoding of the sources and of texts at run time
    /permissive-    # conformance to the standard
    /Zc:__cplusplus # correct value of this macro
    /EHsc)

function(qortk_compile target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES CXX_STANDARD 17 CXX_EXTENSIONS OFF)
    if(MSVC)
        target_compile_options(${target} PRIVATE ${QORTK_MSVC_OPTIONS})
        # Microsoft's headers mark some functions of the C and C++ standards as deprecated.
        target_compile_definitions(${target} PRIVATE _CRT_SECURE_NO_WARNINGS _SCL_SECURE_NO_WARNINGS)
        if(QORTK_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE /WX)
        endif()
        return()
    endif()
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
        return()
    endif()
    target_compile_options(${target} PRIVATE ${QORTK_WARNINGS})
    if(QORTK_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(QORTK_HARDENED)
        target_compile_options(${target} PRIVATE ${QORTK_HARDENING})
        target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now)
    endif()
    if(QORTK_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${QORTK_SANITIZE}
            -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${QORTK_SANITIZE})
    endif()
endfunction()
