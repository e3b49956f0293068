#!/usr/bin/env bash
# Installs the library, shared and static, and builds a program against it in all ways there are.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
consumer=$here/tests/install/consumer
version=$(sed -n 's/^ *VERSION \([0-9.]*\)$/\1/p' "$here/CMakeLists.txt")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

for shared in ON OFF; do
    prefix=$folder/prefix-$shared
    cmake -S "$here" -B "$folder/build-$shared" -DBUILD_SHARED_LIBS=$shared -DCMAKE_BUILD_TYPE=Release \
        -DQORTK_BUILD_TESTS=OFF -DQORTK_BUILD_EXAMPLES=OFF -DCMAKE_INSTALL_LIBDIR=lib
    cmake --build "$folder/build-$shared" --parallel "$(nproc)"
    cmake --install "$folder/build-$shared" --prefix "$prefix"

    # Moved, to see that nothing remembers where it was installed.
    mv "$prefix" "$prefix-moved"
    prefix=$prefix-moved

    cmake -S "$consumer" -B "$folder/by-cmake-$shared" -DCMAKE_PREFIX_PATH="$prefix" \
        -DQORTK_VERSION="$version"
    cmake --build "$folder/by-cmake-$shared"
    "$folder/by-cmake-$shared/consumer"

    [ "$(PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --modversion qortk)" = "$version" ]
    flags=$(PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --cflags --libs qortk)
    [ $shared = ON ] || [[ $flags == *-DQORTK_STATIC*-pthread* ]]
    # shellcheck disable=SC2086 # the flags are words
    c++ -std=c++17 "$consumer/main.cpp" $flags -o "$folder/by-pkg-config"
    LD_LIBRARY_PATH=$prefix/lib "$folder/by-pkg-config"
done

readelf -d "$folder/prefix-ON-moved/lib/libqortk.so" | grep -q "SONAME.*libqortk\.so\.${version%.*}\]"

cmake -S "$consumer" -B "$folder/subproject" -DQORTK_SOURCE="$here"
cmake --build "$folder/subproject" --parallel "$(nproc)"
"$folder/subproject/consumer"
echo "The library can be used in all ways."
