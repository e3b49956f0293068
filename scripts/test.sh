#!/usr/bin/env bash
# Builds everything and runs the tests.
#   scripts/test.sh [PRESET]   PRESET is release (the default), debug, asan, tsan or clang
#   scripts/test.sh windows    builds for Windows with three compilers and runs the tests under Wine
#   scripts/test.sh i686       builds for Linux on 32-bit x86 and runs the tests
#   scripts/test.sh s390x      builds for Linux on s390x (big-endian) and runs the tests under QEMU
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
cd "$here"

build() {
    cmake --preset "$1" -Wno-dev
    cmake --build --preset "$1" --parallel "$(nproc)"
}

run_tests() {
    ctest --preset "$1" --parallel "$(nproc)"
}

preset=${1:-release}
case $preset in
windows)
    require "$CMAKE" "$NINJA" "$GTEST_SOURCE" "$MINGW_X86_64" "$MINGW_I686" "$WINE"
    # One Wine server serves all tests, because its start takes longer than most tests.
    export WINEPREFIX=$here/build/wine WINEDEBUG=-all
    mkdir -p "$WINEPREFIX"
    wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver)
    "$wineserver" -p
    trap '"$wineserver" -k || true' EXIT
    build windows
    run_tests windows
    # With a compiler without C++11 threads, then for 32-bit x86.
    build windows-win32
    run_tests windows-win32
    build windows-i686
    tests/install/zip.sh
    ;;
i686 | s390x)
    require "$CMAKE" "$NINJA" "$GTEST_SOURCE" "g++-$preset-linux-gnu:command -v $preset-linux-gnu-g++"
    if [ "$preset" = s390x ]; then
        require "$QEMU"
    fi
    build "$preset"
    run_tests "$preset"
    ;;
*)
    require "$COMPILER" "$CMAKE" "$MAKE" "$GTEST" "$CURSES" "$LOCALES"
    if [ "$preset" = clang ]; then
        require "clang:command -v clang++"
    fi
    build "$preset"
    run_tests "$preset"
    ;;
esac
