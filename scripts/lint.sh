#!/usr/bin/env bash
# Looks for faults in the library and the examples without running them. .clang-tidy tells what is looked
# for by the one program, and below stands what the other leaves out.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
require "$COMPILER" "$CMAKE" "$MAKE" "$CURSES" "$SDL" "clang-tidy:command -v clang-tidy" "cppcheck:command -v cppcheck"

cd "$here"
build=build/lint
cmake -S . -B $build -DCMAKE_BUILD_TYPE=Debug -DCMAKE_EXPORT_COMPILE_COMMANDS=ON -DQORTK_BUILD_TESTS=OFF -Wno-dev \
    >/dev/null
commands=$build/compile_commands.json

left_out=(
    constParameter      # the public operations are declared as they are
    unreadVariable      # takes a guard, which works by being there, for a value
    unusedStructMember  # does not see a structured binding, nor a vector's elements
    useStlAlgorithm     # a loop of three lines reads as well
    # Does not see that the loop changes the condition, nor that the pointer is returned as a reference.
    knownConditionTrueFalse:src/xml/TextFile.cpp
    constVariable:src/xml/XMLElement.cpp
    # Does not see that a call changes what a reference to const refers to.
    duplicateExpression:examples/host/Script.cpp
)
status=0
mkdir -p $build/cppcheck
cppcheck --project=$commands --cppcheck-build-dir=$build/cppcheck -j "$(nproc)" --quiet --error-exitcode=1 \
    --enable=warning,style,performance,portability --inline-suppr "${left_out[@]/#/--suppress=}" || status=1

# What clang-tidy writes of itself is read only where it fails: the rest is counts.
sed -n 's/^ *"file": "\(.*\)",*$/\1/p' $commands |
    xargs -d '\n' -n 1 -P "$(nproc)" clang-tidy -p $build --quiet 2>$build/clang-tidy.log || {
    grep -v ' generated\.$' $build/clang-tidy.log >&2 || true
    status=1
}
exit $status
