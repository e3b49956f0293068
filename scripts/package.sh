#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the archive and the Debian packages, which include the guide if scripts/docs.sh has built it.
#   scripts/package.sh [DIRECTORY]   in build/package by default
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
require "$COMPILER" "$CMAKE" "$MAKE" "dpkg-dev:command -v dpkg-shlibdeps" "file:command -v file"

cd "$here"
directory=${1:-build/package}
cmake --preset package -B "$directory"
cmake --build "$directory" --parallel "$(nproc)" --target package
ls "$directory"/*.deb "$directory"/*.tar.gz
