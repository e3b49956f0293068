# How every target of the project is compiled. Nothing here reaches a project that uses it.

set(QORTK_WARNINGS
    -Wall -Wextra -Wpedantic
    -Wshadow            # a name that hides another is read as the other
    -Wconversion        # a number that doesn't fit is to be narrowed on purpose
    -Wnon-virtual-dtor  # deleting through such a base is undefined
    -Wold-style-cast)   # a cast is to say what it changes

# Debian's own flags. Undefined first, since some compilers define the macro themselves.
set(QORTK_HARDENING -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
    list(APPEND QORTK_HARDENING -fcf-protection)
endif()
# The compilers that take options as Microsoft's does: cl and clang-cl.
set(QORTK_MSVC_OPTIONS
    /W4
    /utf-8          # the sources' encoding and the programs'
    /permissive-    # the standard's rules
    /Zc:__cplusplus # the true number of the standard
    /EHsc)

function(qortk_compile target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES CXX_STANDARD 17 CXX_EXTENSIONS OFF)
    if(MSVC)
        target_compile_options(${target} PRIVATE ${QORTK_MSVC_OPTIONS})
        # Functions of the C and C++ standards count as deprecated there.
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
