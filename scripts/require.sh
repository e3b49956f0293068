# SPDX-License-Identifier: MIT
# Sourced by the other scripts: checks for the packages that they need.

# require PACKAGE:TEST... installs missing Debian packages. TEST is a shell command that succeeds if the package is
# installed. If the user may not install packages, prints the command for it and ends the script.
require() {
    local missing="" pair
    for pair in "$@"; do
        eval "${pair#*:}" >/dev/null 2>&1 || missing="$missing ${pair%%:*}"
    done
    [ -n "$missing" ] || return 0

    local become_root=""
    if [ "$(id -u)" -ne 0 ]; then
        become_root="sudo"
    fi
    local install="apt-get install -y --no-install-recommends$missing"
    if ! command -v apt-get >/dev/null || { [ -n "$become_root" ] && ! sudo -n true 2>/dev/null; }; then
        echo "Missing packages. Install them and start this script again. On Debian:" >&2
        echo "  sudo $install" >&2
        exit 1
    fi
    echo "Installing:$missing" >&2
    export DEBIAN_FRONTEND=noninteractive
    # A fresh system has no package lists or outdated ones.
    if ! $become_root apt-get update -qq ||
        ! $become_root $install -qq -o Dpkg::Use-Pty=0 >/dev/null; then
        echo "Cannot install the packages. Install them and start this script again:" >&2
        echo "  sudo $install" >&2
        exit 1
    fi
}

has_header() {
    echo "#include <$1>" | c++ -E -x c++ - >/dev/null 2>&1
}

COMPILER="g++:command -v c++"
CMAKE="cmake:command -v cmake"
MAKE="make:command -v make"
GTEST="libgtest-dev:has_header gtest/gtest.h"
CURSES="libncurses-dev:has_header curses.h"
# A test builds locales from these definitions.
LOCALES="locales:test -e /usr/share/i18n/locales/de_DE"
# The test of the host's full screen runs in a pseudo-terminal.
TERMINAL="tmux:command -v tmux"
# Cross builds: GoogleTest is built from its source, programs run in an emulator.
GTEST_SOURCE="googletest:test -e /usr/src/googletest/CMakeLists.txt"
MINGW_I686="g++-mingw-w64-i686:command -v i686-w64-mingw32-g++-posix"
MINGW_X86_64="g++-mingw-w64-x86-64:command -v x86_64-w64-mingw32-g++-posix && command -v x86_64-w64-mingw32-g++-win32"
NINJA="ninja-build:command -v ninja"
QEMU="qemu-user:command -v qemu-s390x"
WINE="wine:command -v wineserver && test -x /usr/lib/wine/wine64"
SDL="libsdl2-dev:has_header SDL2/SDL.h"
