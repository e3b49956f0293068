#!/usr/bin/env bash
# Builds the example host and shows it at work.
#   scripts/demo.sh           runs a script of commands on the sample document
#   scripts/demo.sh FILE.xml  opens a document of your own; type "help" for the commands
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"

document=""
if [ $# -gt 0 ]; then
    document=$(realpath -- "$1")
fi

require "$COMPILER" "$CMAKE" "$MAKE" "$CURSES"
build=$here/build/release
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
if ! { cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=Release -Wno-dev &&
    cmake --build "$build" --target qorhost --parallel "$(nproc)"; } >"$folder/build.log" 2>&1; then
    cat "$folder/build.log" >&2
    exit 1
fi
host=$build/examples/host/qorhost

if [ -n "$document" ]; then
    "$host" "$document"
    exit
fi

cd "$folder"
cp "$here/examples/host/sample-template.xml" .
"$host" --echo --log qorhost.log --config settings.xml "$here/examples/host/sample.xml" <"$here/examples/host/demo.txt"
cp demo.tga "$build/demo.tga"
echo
echo "The picture is in $build/demo.tga."
echo "That was qorhost on examples/host/sample.xml. Open a document of your own with"
echo "  scripts/demo.sh FILE.xml"
