# SPDX-License-Identifier: MIT
# MinGW-w64 for Windows on 32-bit x86.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(MINGW_THREADS posix CACHE STRING "Thread model of the compiler's run-time library: posix or win32")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MINGW_THREADS)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-${MINGW_THREADS})
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-${MINGW_THREADS})
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
# Programs contain the compiler's run-time libraries.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
list(APPEND CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/target-only.cmake)
find_program(QORTK_WINE NAMES wine)
if(QORTK_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${QORTK_WINE})
endif()
