#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Compares the shared library's binary interface with its stored form: the exported symbols with
# src/exported-symbols.txt, and the layout of the public types with src/binary-interface.abi.gz. A change of either
# breaks existing programs.
#   scripts/symbols.sh                  the release build's symbols and the debug build's types
#   scripts/symbols.sh LIBRARY          the symbols of LIBRARY
#   scripts/symbols.sh --types LIBRARY  the types of LIBRARY, which has debug information
#   scripts/symbols.sh --update         stores both
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
cd "$here"

names=src/exported-symbols.txt
types=src/binary-interface.abi.gz
directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT

build() { # PRESET
    require "$COMPILER" "$CMAKE" "$MAKE"
    cmake --preset "$1" -Wno-dev
    cmake --build --preset "$1" --target qortk --parallel "$(nproc)"
}

# A constructor or destructor has several symbols with one demangled name. Compilers export different ones of them.
list_names() { # LIBRARY
    nm --dynamic --defined-only --demangle "$1" | cut -d' ' -f3- | LC_ALL=C sort -u
}

compare_names() { # LIBRARY
    if ! diff -U0 --label "$names" --label "$1" "$names" - < <(list_names "$1"); then
        echo "The exported names have changed. If that is intended: scripts/symbols.sh --update" >&2
        exit 1
    fi
}

# Only types of the public headers count, and paths of the building machine do not.
describe_types() { # LIBRARY
    require "abigail-tools:command -v abidw"
    abidw --headers-dir include --drop-private-types --exported-interfaces-only --type-id-style hash \
        --no-comp-dir-path --no-corpus-path --no-elf-needed --no-parameter-names --no-show-locs "$1" |
        sed -E "s|( path=')[^']*/src/|\\1src/|"
}

compare_types() { # LIBRARY
    gunzip -c "$types" >"$directory/stored.abi"
    describe_types "$1" >"$directory/built.abi"
    if ! abidiff "$directory/stored.abi" "$directory/built.abi"; then
        echo "The binary interface has changed. If that is intended: scripts/symbols.sh --update" >&2
        exit 1
    fi
}

case ${1:-} in
--update)
    build release
    list_names build/release/src/libqortk.so >"$names"
    build debug
    describe_types build/debug/src/libqortk.so | gzip -9n >"$types"
    ;;
--types)
    compare_types "$2"
    ;;
'')
    build release
    compare_names build/release/src/libqortk.so
    build debug
    compare_types build/debug/src/libqortk.so
    ;;
*)
    compare_names "$1"
    ;;
esac
