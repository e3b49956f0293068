#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs fuzz targets, each with its corpus. Stops at the first target that finds a bug. Stores new inputs in
# build/fuzz/corpus and the failing input in build/fuzz.
#   scripts/fuzz.sh [SECONDS] [TARGET...]   all targets, 30 seconds each, by default
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"

seconds=${1:-30}
shift || true
if ! [[ $seconds =~ ^[0-9]+$ ]]; then
    echo "Usage: scripts/fuzz.sh [SECONDS] [TARGET...]" >&2
    exit 2
fi

has_fuzzer() {
    echo 'extern "C" int LLVMFuzzerTestOneInput(const char*, unsigned long) { return 0; }' |
        clang++ -fsanitize=fuzzer,address -x c++ -o /dev/null -
}
require "$COMPILER" "$CMAKE" "$MAKE" "$GTEST" "clang:command -v clang++" "libclang-rt-dev:has_fuzzer"

cd "$here"
corpora=tests/fuzz/corpus
targets=("$@")
if [ $# -eq 0 ]; then
    targets=("$corpora"/*)
    targets=("${targets[@]##*/}")
fi
for target in "${targets[@]}"; do
    if ! [ -d "$corpora/$target" ]; then
        echo "Unknown fuzz target '$target'. Known targets: $(ls "$corpora" | xargs)" >&2
        exit 2
    fi
done

cmake --preset fuzz -Wno-dev
cmake --build --preset fuzz --parallel "$(nproc)" --target "${targets[@]/%/Fuzz}"

# In memory, the flush of each saved file takes no time. On a disk it takes nearly all of it.
if [ -z "${TMPDIR-}" ] && [ -w /dev/shm ]; then
    export TMPDIR=/dev/shm
fi

for target in "${targets[@]}"; do
    options=()
    case $target in
    XMLParser) options=(-dict=tests/fuzz/xml.dict) ;;
    XMLValidator | Configuration) options=(-dict=tests/fuzz/xml.dict -max_len=512) ;;
    Console | StateMachine) options=(-max_len=200) ;;
    StringUtil) options=(-max_len=128) ;;
    esac
    echo "$target: $seconds seconds"
    found=build/fuzz/corpus/$target
    mkdir -p "$found"
    log=build/fuzz/$target.log
    if ! "build/fuzz/tests/fuzz/${target}Fuzz" "${options[@]}" -max_total_time="$seconds" -timeout=25 \
        -artifact_prefix="build/fuzz/$target-" "$found" "$corpora/$target" 2>"$log"; then
        cat "$log" >&2
        exit 1
    fi
    tail -n 1 "$log"
done
