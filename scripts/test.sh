#!/usr/bin/env bash
# Builds everything and runs the tests.
#   scripts/test.sh [PRESET]   PRESET is release (the default), debug, asan, tsan or clang
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"

preset=${1:-release}
require "$COMPILER" "$CMAKE" "$MAKE" "$GTEST" "$CURSES" "$LOCALES"
if [ "$preset" = clang ]; then
    require "clang:command -v clang++"
fi

cd "$here"
cmake --preset "$preset" -Wno-dev
cmake --build --preset "$preset" --parallel "$(nproc)"
ctest --preset "$preset" --parallel "$(nproc)"
