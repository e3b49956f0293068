#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds everything and runs the tests.
#   scripts/test.sh [PRESET]   PRESET is release (the default), debug, asan, tsan or clang
#   scripts/test.sh fallbacks  builds a static library without the system functions and processor instructions
#                              that it can do without, and runs the tests shuffled and, if it may, as a user id
#                              without a password entry
#   scripts/test.sh windows    builds for Windows with three compilers and runs the tests under Wine
#   scripts/test.sh i686       builds for Linux on 32-bit x86 and runs the tests
#   scripts/test.sh s390x      builds for Linux on s390x (big-endian) and runs the tests under QEMU
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
cd "$here"

options=(-Wno-dev)
if [ "${CI:-}" = true ]; then
    options+=(-DQORTK_WARNINGS_AS_ERRORS=ON)
fi

build() {
    cmake --preset "$1" "${options[@]}"
    cmake --build --preset "$1" --parallel "$(nproc)"
}

run_tests() {
    local log=build/$1/tests.log
    ctest --preset "$1" --parallel "$(nproc)" | tee "$log"
    if [ "${CI:-}" = true ] && grep '(Skipped)' "$log"; then
        echo "A skipped test is a failure in CI." >&2
        exit 1
    fi
}

# Builds and tests a copy of the sources that the unprivileged user can reach and write to.
test_fallbacks() {
    local copy user=54321
    copy=$(mktemp -d)
    # shellcheck disable=SC2064 # the directory of now
    trap "rm -rf '$copy'" EXIT
    tar -C "$here" --exclude=./build --exclude=./.git -c . | tar -C "$copy" -x --no-same-owner
    cd "$copy"
    build fallbacks
    export GTEST_SHUFFLE=1
    if [ "$(id -u)" -ne 0 ]; then
        run_tests fallbacks
        return
    fi
    chown -R $user:$user "$copy"
    run_tests=$(declare -f run_tests)
    env -u HOME setpriv --reuid=$user --regid=$user --clear-groups \
        bash -euo pipefail -c "$run_tests; run_tests fallbacks"
}

preset=${1:-release}
case $preset in
windows)
    require "$CMAKE" "$NINJA" "$GTEST_SOURCE" "$MINGW_X86_64" "$MINGW_I686" "$WINE"
    # One Wine server serves all tests, because its start takes longer than most tests. The overrides suppress
    # dialogs that offer to install .NET and a browser.
    export WINEPREFIX=$here/build/wine WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
    mkdir -p "$WINEPREFIX"
    wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver)
    wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
    trap '"$wineserver" -k || true' EXIT
    # With this driver, windows need no display. It takes effect in a new session.
    "$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f
    "$wineserver" -k -w || true
    "$wineserver" -p
    # Programs that start at the same time must not create the directory of Wine's settings together. The first
    # one also starts Wine's services, which keep its output open.
    "$wine" wineboot --init
    build windows
    run_tests windows
    # The library and its programs, with a compiler without C++11 threads and for 32-bit x86. GoogleTest requires
    # such threads, and Debian's 32-bit Wine cannot be installed beside every other package.
    build windows-win32
    build windows-i686
    tests/install/zip.sh
    ;;
fallbacks)
    require "$COMPILER" "$CMAKE" "$MAKE" "$GTEST" "$CURSES" "$LOCALES"
    test_fallbacks
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
