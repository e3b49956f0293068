# SPDX-License-Identifier: MIT
# Debian's cross compiler for Linux on s390x, which is big-endian. Programs are linked statically, so that they run
# without the libraries of the target system.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(CMAKE_C_COMPILER s390x-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER s390x-linux-gnu-g++)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
list(APPEND CMAKE_FIND_ROOT_PATH /usr/s390x-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/target-only.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x)
