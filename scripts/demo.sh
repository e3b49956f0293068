#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the example host and runs it.
#   scripts/demo.sh           runs a script of commands on the sample document
#   scripts/demo.sh FILE.xml  opens another document; "help" lists the commands
#   scripts/demo.sh --window  shows the example program with a window instead
# Pictures have 24-bit colors if the variable COLORTERM is "truecolor".
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"

if [ "${1:-}" = --window ]; then
    exec "$here/scripts/window-demo.sh" "${@:2}"
fi

# Stores the build's output in a file and shows its percentage: on a terminal in one line, otherwise
# every ten percent.
show_progress() { # LOG_FILE
    local line percent shown=-10 step=10
    if [ -t 2 ]; then
        step=1
    fi
    while IFS= read -r line; do
        printf '%s\n' "$line" >>"$1"
        if [[ $line =~ ^\[\ *([0-9]+)%\] ]]; then
            percent=${BASH_REMATCH[1]}
        elif [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]]; then
            percent=$((100 * BASH_REMATCH[1] / BASH_REMATCH[2]))
        else
            continue
        fi
        if ((percent >= shown + step)); then
            shown=$percent
            if [ -t 2 ]; then
                printf '\rBuilding qorhost: %3d %%' "$percent" >&2
            else
                printf 'Building qorhost: %d %%\n' "$percent" >&2
            fi
        fi
    done
    if [ -t 2 ]; then
        printf '\r\033[K' >&2
    fi
}

document=""
if [ $# -gt 0 ]; then
    document=$(realpath -- "$1")
fi

require "$COMPILER" "$CMAKE" "$MAKE" "$CURSES"
build=$here/build/release
directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT
if ! { cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=Release -Wno-dev &&
    cmake --build "$build" --target qorhost --parallel "$(nproc)"; } 2>&1 |
    show_progress "$directory/build.log"; then
    cat "$directory/build.log" >&2
    exit 1
fi
host=$build/examples/host/qorhost

if [ -n "$document" ]; then
    "$host" "$document"
    exit
fi

cd "$directory"
cp "$here/examples/host/sample-template.xml" .
"$host" --echo --log qorhost.log --config settings.xml "$here/examples/host/sample.xml" \
    <"$here/examples/host/demo.txt"
cp demo.tga "$build/demo.tga"
echo
echo "The picture is $build/demo.tga."
echo "The document was examples/host/sample.xml. To open another one:"
echo "  scripts/demo.sh FILE.xml"
