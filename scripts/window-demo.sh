#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds and starts qorharbour, the example program with a window. Without a display, it runs 300 frames and prints
# the checksums of the last one.
#   scripts/window-demo.sh [ARGUMENT...]   arguments of qorharbour
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
require "$COMPILER" "$CMAKE" "$MAKE" "$SDL"

build=$here/build/release
echo "Building qorharbour ..." >&2
if ! log=$({ cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=Release -Wno-dev &&
    cmake --build "$build" --target qorharbour --parallel "$(nproc)"; } 2>&1); then
    printf '%s\n' "$log" >&2
    exit 1
fi

harbour=$build/examples/harbour/qorharbour
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec "$harbour" "$@"
fi
echo "No display (DISPLAY and WAYLAND_DISPLAY are empty): running 300 frames without a window."
SDL_VIDEODRIVER=dummy "$harbour" --frames 300 --time 19 --screenshot "$build/harbour.tga" "$@"
