#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the benchmarks of this and other libraries, runs them, and writes the ratios of their times to
# build/bench/ratios.md. Takes less than ten minutes.
#   scripts/bench.sh               all benchmarks
#   scripts/bench.sh PROGRAM...    some of them, such as xml or checksum
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
require "$COMPILER" "$CMAKE" "$MAKE" "python3:command -v python3" \
    "libbenchmark-dev:has_header benchmark/benchmark.h" \
    "libboost-dev:has_header boost/version.hpp" "libdeflate-dev:has_header libdeflate.h" \
    "libeigen3-dev:has_header eigen3/Eigen/Core" "libfast-float-dev:has_header fast_float/fast_float.h" \
    "libglm-dev:has_header glm/glm.hpp" "libisal-dev:has_header isa-l/crc.h" \
    "libpixman-1-dev:has_header pixman-1/pixman.h" "libpugixml-dev:has_header pugixml.hpp" \
    "librapidxml-dev:has_header rapidxml/rapidxml.hpp" "libsdl2-dev:has_header SDL2/SDL.h" \
    "libspdlog-dev:has_header spdlog/spdlog.h" "libssl-dev:has_header openssl/md5.h" \
    "libstb-dev:has_header stb/stb_image.h" "libtinyxml2-dev:has_header tinyxml2.h" \
    "libxml2-dev:has_header libxml2/libxml/parser.h" "zlib1g-dev:has_header zlib.h" "pkg-config:command -v pkg-config"

cd "$here"
cmake --preset bench -Wno-dev
cmake --build --preset bench --parallel "$(nproc)"
programs=build/bench/bench
results=build/bench/results
mkdir -p "$results"

if [ $# -eq 0 ]; then
    set -- checksum configuration console imaging lock log maths statemachine text validation xml
fi
files=()
run() { # PROGRAM RESULT [ARGUMENT]
    echo "Running bench_$1 ${*:3}"
    # Two threads take very different times on one processor and on two, which the system chooses.
    local pin=()
    [ "$1" != lock ] || pin=(taskset -c "$(taskset -cp $$ | sed -E 's/.*: ([0-9]+).*/\1/')")
    # Repetitions of all libraries are interleaved at random, so that a busy machine slows all of them down.
    "${pin[@]}" "$programs/bench_$1" --benchmark_repetitions=7 --benchmark_min_time=0.03 \
        --benchmark_enable_random_interleaving=true --benchmark_format=json "${@:3}" >"$results/$2.json"
    files+=("$results/$2.json")
}
for name in "$@"; do
    run "$name" "$name"
    if [ "$name" = xml ]; then
        run xml xml-used-heap --used-heap
    fi
done
python3 bench/ratios.py "${files[@]}" >build/bench/ratios.md
echo "The ratios are in build/bench/ratios.md."
