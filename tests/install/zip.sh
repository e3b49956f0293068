#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the zip for Windows, builds a program against its files alone, and runs it under Wine.
set -euo pipefail

. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
toolchain=$here/cmake/toolchains/mingw-w64-x86_64.cmake

(cd "$here/build/windows" && cpack -G ZIP -B "$folder/packages")
mkdir "$folder/zip"
(cd "$folder/zip" && cmake -E tar xf "$folder/packages"/qortk-"$version"-*.zip)
root=$(echo "$folder/zip"/*)
[ -d "$root/bin" ] || root=$folder/zip
(cd "$root" && find . ! -type d -printf '%P\n') |
    same_files "$(development_files lib libqortk.dll.a && echo "bin/libqortk-$major.dll")"

cmake -S "$consumer" -B "$folder/consumer" -G Ninja --toolchain "$toolchain" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_FIND_ROOT_PATH="$root" -DCMAKE_PREFIX_PATH="$root" -DQORTK_VERSION="$version"
cmake --build "$folder/consumer"
cp "$folder/consumer/consumer.exe" "$root/bin"
export WINEDEBUG=-all WINEPREFIX=${WINEPREFIX:-$here/build/wine}
wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
[ "$(cd "$root/bin" && "$wine" ./consumer.exe | tr -d '\r')" = "$version" ]

export PKG_CONFIG_LIBDIR=$root/lib/pkgconfig PKG_CONFIG_ALLOW_SYSTEM_CFLAGS=1
if command -v pkg-config >/dev/null; then
    # By the compiler without C++11 threads, whose run-time library needs no further DLL.
    # shellcheck disable=SC2046 # the flags are words
    x86_64-w64-mingw32-g++-win32 -std=c++17 -static-libgcc -static-libstdc++ "$consumer/main.cpp" -o "$root/bin/second.exe" \
        $(pkg-config --define-prefix --cflags --libs qortk)
    [ "$(cd "$root/bin" && "$wine" ./second.exe | tr -d '\r')" = "$version" ]
fi
echo "The zip can be used."
