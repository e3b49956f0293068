#!/usr/bin/env bash
# Makes the Debian packages and the archive, in build/package or in the given directory. The guide becomes a
# package if scripts/docs.sh has built it.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
require "$COMPILER" "$CMAKE" "$MAKE" "dpkg-dev:command -v dpkg-shlibdeps" "file:command -v file"

cd "$here"
folder=${1:-build/package}
cmake --preset package -B "$folder"
cmake --build "$folder" --parallel "$(nproc)" --target package
ls "$folder"/*.deb "$folder"/*.tar.gz
