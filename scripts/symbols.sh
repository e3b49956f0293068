#!/usr/bin/env bash
# Compares the symbols that the shared library exports with src/exported-symbols.txt. A symbol that is removed or
# changed breaks existing programs.
#   scripts/symbols.sh [LIBRARY]           compares; LIBRARY is the release build by default
#   scripts/symbols.sh --update [LIBRARY]  updates the list
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"

list=$here/src/exported-symbols.txt
update=no
if [ "${1:-}" = --update ]; then
    update=yes
    shift
fi
library=${1:-}
if [ -z "$library" ]; then
    require "$COMPILER" "$CMAKE" "$MAKE"
    library=$here/build/release/src/libqortk.so
    cmake -S "$here" -B "$here/build/release" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON -Wno-dev
    cmake --build "$here/build/release" --target qortk --parallel "$(nproc)"
fi

# A constructor or destructor has several symbols with one demangled name. Compilers export different ones of them.
names=$(nm --dynamic --defined-only --demangle "$library" | cut -d' ' -f3- | LC_ALL=C sort -u)
if [ $update = yes ]; then
    echo "$names" >"$list"
elif ! diff -U0 --label "$list" --label "$library" "$list" - <<<"$names"; then
    echo "The exported symbols have changed. If this is intended, run scripts/symbols.sh --update" >&2
    exit 1
fi
