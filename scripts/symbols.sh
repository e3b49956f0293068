#!/usr/bin/env bash
# Compares the names that the shared library exports with src/exported-symbols.txt. Programs are linked
# with them: one that goes, or changes, breaks programs that are built already.
#   scripts/symbols.sh [LIBRARY]           the release build, or the LIBRARY given
#   scripts/symbols.sh --update [LIBRARY]  writes the list anew
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

# Constructors and destructors have several symbols of one name, of which compilers make different ones.
names=$(nm --dynamic --defined-only --demangle "$library" | cut -d' ' -f3- | LC_ALL=C sort -u)
if [ $update = yes ]; then
    echo "$names" >"$list"
elif ! diff -U0 --label "$list" --label "$library" "$list" - <<<"$names"; then
    echo "The exported names have changed. If that is meant: scripts/symbols.sh --update" >&2
    exit 1
fi
