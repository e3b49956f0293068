#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Formats the C++ files. With --check, lists the files that need formatting and fails if there are any.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
require "clang-format:command -v clang-format"

cd "$here"
files() { find include src examples tests bench -name '*.h' -o -name '*.cpp' | sort; }
if [ "${1:-}" = --check ]; then
    files | xargs clang-format --dry-run --Werror
else
    files | xargs clang-format -i
fi
