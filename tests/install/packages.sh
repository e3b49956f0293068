#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the packages, checks their content, installs those for Debian, builds programs against them and
# against the archive, and removes the packages again.
set -euo pipefail

. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
. "$here/scripts/require.sh"
runtime=libqortk$major
development=libqortk-dev
documentation=libqortk-doc

become_root=()
if [ "$(id -u)" -ne 0 ]; then
    become_root=(sudo -n)
    if ! sudo -n true 2>/dev/null; then
        echo "Skipped: packages are installed by root, or where sudo asks for no password." >&2
        [ "${CI:-}" != true ]
        exit
    fi
fi
require "pkg-config:command -v pkg-config" "lintian:command -v lintian" "binutils:command -v readelf"
if dpkg-query -W -f '${Status}\n' $runtime $development $documentation 2>/dev/null | grep -q ' installed$'; then
    echo "Remove $runtime, $development and $documentation from this system, then start again." >&2
    exit 1
fi

unset CMAKE_PREFIX_PATH PKG_CONFIG_PATH LD_LIBRARY_PATH CPATH LIBRARY_PATH
"$here/scripts/docs.sh"
"$here/scripts/package.sh" "$folder/build"
lintian --allow-root --fail-on error,warning "$folder"/build/*.deb
libdir=lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)
runtime_package=$(echo "$folder/build/${runtime}_${version}"_*.deb)
development_package=$(echo "$folder/build/${development}_${version}"_*.deb)

package_files() {
    dpkg-deb --fsys-tarfile "$1" | tar -t | grep -v '/$' | sed 's|^\./usr/||'
}
document_files() {
    printf "share/doc/$1/%s\n" changelog.Debian.gz changelog.gz copyright
}
package_files "$runtime_package" | same_files "$(runtime_files "$libdir" && document_files $runtime)"
package_files "$development_package" |
    same_files "$(development_files "$libdir" libqortk.so && document_files $development)"
documentation_package=$(echo "$folder/build/${documentation}_${version}"_all.deb)
package_files "$documentation_package" >"$folder/documentation"
grep -q "^share/doc/$documentation/html/index.html$" "$folder/documentation"
grep -q "^share/doc/$documentation/examples/host/main.cpp$" "$folder/documentation"
[ "$(dpkg-deb -f "$runtime_package" Depends | sed 's/ ([^)]*)//g')" = "libc6, libgcc-s1, libstdc++6" ]
[ "$(dpkg-deb -f "$development_package" Depends)" = "$runtime (= $version)" ]
[ "$(dpkg-deb -I "$runtime_package" shlibs)" = "libqortk $major $runtime (>= $version)" ]

mkdir "$folder/archive"
tar -xf "$folder/build/qortk-$version-"*.tar.gz -C "$folder/archive" --strip-components=1
(cd "$folder/archive" && find . ! -type d -printf '%P\n') |
    grep -v '^share/doc/' |
    same_files "$(development_files "$libdir" libqortk.so && runtime_files "$libdir")"
readelf -d "$folder/archive/$libdir/libqortk.so" | grep BIND_NOW >/dev/null
readelf --wide --dyn-syms "$folder/archive/$libdir/libqortk.so" | grep __stack_chk_fail >/dev/null
if readelf -S "$folder/archive/$libdir/libqortk.so" | grep -q '\.symtab'; then
    echo "The packaged library is not stripped." >&2
    exit 1
fi
use_by_cmake by-archive -DCMAKE_PREFIX_PATH="$folder/archive" -DQORTK_VERSION="$version"

remove() {
    "${become_root[@]}" dpkg --purge $documentation $development $runtime
    rm -rf "$folder"
}
trap remove EXIT
"${become_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-remove -o Dpkg::Use-Pty=0 \
    "$runtime_package" "$development_package" "$documentation_package"
[ "$(pkg-config --cflags --libs qortk | xargs)" = "-lqortk" ]
use_by_cmake installed -DQORTK_VERSION="$version"
grep -q "^qortk_DIR:.*=/usr/$libdir/cmake/qortk$" "$folder/installed/CMakeCache.txt"
use_by_pkg_config ""
cmake -S "/usr/share/doc/$documentation/examples" -B "$folder/examples"
cmake --build "$folder/examples" --target recipe-document qorhost --parallel "$(nproc)"
echo "The packages can be installed and used."
