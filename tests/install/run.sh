#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the library, shared and static, and builds a program against it in all ways there are.
set -euo pipefail

. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

for shared in ON OFF; do
    prefix=$folder/prefix-$shared
    cmake -S "$here" -B "$folder/build-$shared" -DBUILD_SHARED_LIBS=$shared -DCMAKE_BUILD_TYPE=Release \
        -DQORTK_BUILD_TESTS=OFF -DQORTK_BUILD_EXAMPLES=OFF -DCMAKE_INSTALL_LIBDIR=lib
    cmake --build "$folder/build-$shared" --parallel "$(nproc)"
    cmake --install "$folder/build-$shared" --prefix "$prefix"
    if [ $shared = ON ]; then
        files=$(development_files lib libqortk.so && runtime_files lib)
    else
        files=$(development_files lib libqortk.a)
    fi
    (cd "$prefix" && find . ! -type d -printf '%P\n') | same_files "$files"

    # Moved, to see that nothing remembers where it was installed.
    mv "$prefix" "$prefix-moved"
    prefix=$prefix-moved

    use_by_cmake "by-cmake-$shared" -DCMAKE_PREFIX_PATH="$prefix" -DQORTK_VERSION="$major"
    if cmake -S "$consumer" -B "$folder/next" -DCMAKE_PREFIX_PATH="$prefix" -DQORTK_VERSION=$((major + 1)) \
        2>/dev/null; then
        echo "Version $version passes for a later one." >&2
        exit 1
    fi

    # A moved library needs the new prefix in its pkg-config file.
    grep -qx "prefix=${prefix%-moved}" "$prefix/lib/pkgconfig/qortk.pc"
    sed -i "s|^prefix=.*|prefix=$prefix|" "$prefix/lib/pkgconfig/qortk.pc"
    export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
    [ $shared = ON ] || [[ $(pkg-config --cflags --libs qortk) == *-DQORTK_STATIC*-pthread* ]]
    use_by_pkg_config "$prefix/lib"
done

readelf -d "$folder/prefix-ON-moved/lib/libqortk.so" | grep -q "SONAME.*libqortk\.so\.$major\]"

use_by_cmake subproject -DQORTK_SOURCE="$here"
use_by_cmake fetched -DQORTK_SOURCE="$here" -DQORTK_FETCH=ON -DBUILD_SHARED_LIBS=OFF
echo "The library can be used in all ways."
