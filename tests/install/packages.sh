#!/usr/bin/env bash
# Makes the packages, installs those for Debian on this machine, builds a program against them, and
# removes them again. Uses the archive too.
set -euo pipefail

. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
. "$here/scripts/require.sh"
runtime=libqortk$major
development=libqortk-dev

become_root=()
if [ "$(id -u)" -ne 0 ]; then
    become_root=(sudo -n)
    if ! sudo -n true 2>/dev/null; then
        echo "Skipped: packages are installed by root, or where sudo asks for no password." >&2
        [ "${CI:-}" != true ]
        exit
    fi
fi
require "pkg-config:command -v pkg-config"
if dpkg-query -W $runtime $development >/dev/null 2>&1; then
    echo "$runtime or $development is on this machine already. Remove them, and start again." >&2
    exit 1
fi

# What others have set must not help to find anything.
unset CMAKE_PREFIX_PATH PKG_CONFIG_PATH LD_LIBRARY_PATH CPATH LIBRARY_PATH
"$here/scripts/package.sh" "$folder/build"
libdir=lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)
runtime_package=$(echo "$folder/build/${runtime}_${version}"_*.deb)
development_package=$(echo "$folder/build/${development}_${version}"_*.deb)

package_files() {
    dpkg-deb --fsys-tarfile "$1" | tar -t | grep -v '/$' | sed 's|^\./usr/||'
}
package_files "$runtime_package" | same_files "$(runtime_files "$libdir")"
package_files "$development_package" | same_files "$(development_files "$libdir" libqortk.so)"
[ "$(dpkg-deb -f "$runtime_package" Depends | sed 's/ ([^)]*)//g')" = "libc6, libgcc-s1, libstdc++6" ]
[ "$(dpkg-deb -f "$development_package" Depends)" = "$runtime (= $version)" ]
[ "$(dpkg-deb -I "$runtime_package" shlibs)" = "libqortk $major $runtime (>= $version)" ]

mkdir "$folder/archive"
tar -xf "$folder/build/qortk-$version-"*.tar.gz -C "$folder/archive" --strip-components=1
(cd "$folder/archive" && find . ! -type d -printf '%P\n') |
    same_files "$(development_files "$libdir" libqortk.so && runtime_files "$libdir")"
if readelf -S "$folder/archive/$libdir/libqortk.so" | grep -q '\.symtab'; then
    echo "The packaged library is not stripped." >&2
    exit 1
fi
use_by_cmake by-archive -DCMAKE_PREFIX_PATH="$folder/archive" -DQORTK_VERSION="$version"

remove() {
    "${become_root[@]}" dpkg --purge $development $runtime
    rm -rf "$folder"
}
trap remove EXIT
"${become_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq -o Dpkg::Use-Pty=0 \
    "$runtime_package" "$development_package"
use_by_cmake installed -DQORTK_VERSION="$version"
grep -q "^qortk_DIR:.*=/usr/$libdir/cmake/qortk$" "$folder/installed/CMakeCache.txt"
use_by_pkg_config ""
echo "The packages can be installed and used."
