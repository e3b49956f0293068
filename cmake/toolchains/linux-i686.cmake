# Linux on 32-bit x86 by Debian's cross compiler. Programs are linked statically, so that they run without the
# target's libraries.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER i686-linux-gnu-g++)
# The C library's older types end in 2038 and at 2 GiB.
set(CMAKE_CXX_FLAGS_INIT "-D_FILE_OFFSET_BITS=64 -D_TIME_BITS=64")
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
list(APPEND CMAKE_FIND_ROOT_PATH /usr/i686-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/target-only.cmake)
