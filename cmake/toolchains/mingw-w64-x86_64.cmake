# SPDX-License-Identifier: MIT
# MinGW-w64 for Windows on x86-64.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(MINGW_THREADS posix CACHE STRING "Thread model of the compiler's run-time library: posix or win32")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MINGW_THREADS)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-${MINGW_THREADS})
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-${MINGW_THREADS})
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# Programs contain the compiler's run-time libraries.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
list(APPEND CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/target-only.cmake)
find_program(QORTK_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(QORTK_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${QORTK_WINE})
endif()
