#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks the library and the examples by static analysis with clang-tidy and cppcheck. .clang-tidy lists the checks of
# clang-tidy. The checks that cppcheck omits are listed below.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
require "$COMPILER" "$CMAKE" "$MAKE" "$CURSES" "$SDL" "clang-tidy:command -v clang-tidy" "cppcheck:command -v cppcheck"

cd "$here"
build=build/lint
cmake -S . -B $build -DCMAKE_BUILD_TYPE=Debug -DCMAKE_EXPORT_COMPILE_COMMANDS=ON -DQORTK_BUILD_TESTS=OFF -Wno-dev \
    >/dev/null
commands=$build/compile_commands.json

suppressed=(
    constParameter      # the parameters of public operations cannot change
    unreadVariable      # reports scope guards
    unusedStructMember  # reports members that are used in structured bindings or in elements of vectors
    useStlAlgorithm     # short loops are as readable as algorithms
    # Takes a condition that the loop changes for constant.
    knownConditionTrueFalse:src/xml/TextFile.cpp
    # Takes a pointer that is returned as a reference for constant.
    constVariable:src/xml/XMLElement.cpp
    # The bytes of a text are written before they are read.
    uninitMemberVar:include/qor/XMLElement.h
    # Reports two equal expressions, although a call between them changes the object of a const reference.
    duplicateExpression:examples/host/Script.cpp
)
status=0
mkdir -p $build/cppcheck
cppcheck --project=$commands --cppcheck-build-dir=$build/cppcheck -j "$(nproc)" --quiet --error-exitcode=1 \
    --enable=warning,style,performance,portability --inline-suppr "${suppressed[@]/#/--suppress=}" || status=1

# The standard error of clang-tidy is shown only on failure, without the lines that count warnings.
sed -n 's/^ *"file": "\(.*\)",*$/\1/p' $commands |
    xargs -d '\n' -n 1 -P "$(nproc)" clang-tidy -p $build --quiet 2>$build/clang-tidy.log || {
    grep -v ' generated\.$' $build/clang-tidy.log >&2 || true
    status=1
}
exit $status
