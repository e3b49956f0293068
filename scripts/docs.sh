#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the reference and the guide. Fails if a public name, parameter or result has no description, or if a program
# on a page differs from its file.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$here/scripts/require.sh"
require "python3:command -v python3" "doxygen:command -v doxygen" "graphviz:command -v dot"

cd "$here"
scripts/embed.py --check
rm -rf build/docs
mkdir -p build/docs
QORTK_VERSION=$(sed -n 's/^#define QORTK_VERSION_[A-Z]* \([0-9]*\)$/\1/p' include/qor/Version.h | paste -sd.)
export QORTK_VERSION
doxygen docs/Doxyfile
scripts/code_blocks.py build/docs/html
scripts/search_index.py build/docs/html
echo "The pages begin with build/docs/html/index.html."
