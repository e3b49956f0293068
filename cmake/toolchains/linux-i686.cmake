# SPDX-License-Identifier: MIT
# Debian's cross compiler for Linux on 32-bit x86. Programs are linked statically, so that they run without the
# libraries of the target system.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER i686-linux-gnu-g++)
# By default, times end in 2038 and file sizes at 2 GiB.
set(CMAKE_CXX_FLAGS_INIT "-D_FILE_OFFSET_BITS=64 -D_TIME_BITS=64")
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
list(APPEND CMAKE_FIND_ROOT_PATH /usr/i686-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/target-only.cmake)
